// Arbitrary bytes as one remote call against the simulated host: decoded,
// run through the generated handlers as the main thread runs them, and
// encoded. A host error ends in an exception, caught here as the server
// catches it; anything else (a crash, a sanitizer report, a leak outside the
// protocol's rules) is a finding.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>
#include <variant>

#include "server/call.h"
#include "server/decoder.h"
#include "sim/sim.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    tvsim_start();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tvapic::server;
    Decoded decoded = Decode(std::string_view(reinterpret_cast<const char*>(data), size));
    auto* request = std::get_if<Request>(&decoded);
    if (!request || !request->function) return 0;
    Call call(std::move(*request));
    try {
        call.Run();
    } catch (const std::exception&) {
        return 0;  // the server reports it and drops the connection
    }
    call.Response();
    return 0;
}
