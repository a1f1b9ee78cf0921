// Arbitrary bytes as one request: through the name dispatcher and the
// generated handlers into the simulated host, over memory instead of a
// socket. A request the bridge cannot read ends in an exception, caught here
// as the server catches it; anything else (a crash, a sanitizer report, a
// leak outside the protocol's rules) is a finding.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>

#include "bridge/dispatcher.h"
#include "bridge/handler_support.h"
#include "bridge/memory_stream.h"
#include "sim/sim.h"

namespace {

using tvapic::bridge::Handler;

// The handler the request's name selects; null when the name cannot be read
// or names no function.
Handler HandlerOf(const std::uint8_t* data, std::size_t size, std::size_t& end_of_name) {
    std::uint64_t count = 0;
    if (size < sizeof count) return nullptr;
    std::memcpy(&count, data, sizeof count);
    if (count > size - sizeof count) return nullptr;
    end_of_name = sizeof count + static_cast<std::size_t>(count);
    return tvapic::bridge::FindHandler(
        std::string_view(reinterpret_cast<const char*>(data) + sizeof count, static_cast<std::size_t>(count)));
}

// What the protocol promises of every call that ends normally: the
// connection is closed, and a name that is not a remotable function reads
// nothing after the name and answers nothing.
void CheckFinishedCall(const tvapic::bridge::MemoryStream& stream, const std::uint8_t* data, std::size_t size) {
    if (!stream.closed()) __builtin_trap();
    std::size_t end_of_name = 0;
    Handler handler = HandlerOf(data, size, end_of_name);
    if (handler && handler != &tvapic::bridge::EmptyHandler) return;
    if (!stream.response().empty() || stream.unread() != size - end_of_name) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    tvsim_start();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tvapic::bridge::MemoryStream stream(std::string(reinterpret_cast<const char*>(data), size));
    try {
        tvapic::bridge::Dispatch(stream);
    } catch (const std::exception&) {
        return 0;  // the server reports it and drops the connection
    }
    CheckFinishedCall(stream, data, size);
    return 0;
}
