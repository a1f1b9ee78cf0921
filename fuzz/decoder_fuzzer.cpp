// Arbitrary bytes into the request decoder, which knows no socket and no
// host. Beyond crashes and sanitizer reports, a finding is a decoder that
// asks for bytes it already has (the server would wait for ever), or a
// request whose arguments disagree with its function's wire signature.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>

#include "server/decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tvapic::server;
    Decoded decoded = Decode(std::string_view(reinterpret_cast<const char*>(data), size));
    if (const auto* need = std::get_if<NeedBytes>(&decoded)) {
        if (need->total <= size) __builtin_trap();
    } else if (const auto* request = std::get_if<Request>(&decoded)) {
        if (!request->function) {
            if (!request->args.empty()) __builtin_trap();
            return 0;
        }
        if (request->args.size() != request->function->arity) __builtin_trap();
        for (std::size_t i = 0; i < request->args.size(); ++i) {
            if (request->args[i].index() != static_cast<std::size_t>(request->function->kinds[i])) __builtin_trap();
        }
    }
    return 0;
}
