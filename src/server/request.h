// A remote call as the server thread reads it off the connection: the
// function its name selects and its arguments as values of their own, in
// wire order. Nothing in it points into the connection's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "server/wire.h"

namespace tvapic::server {

class Call;

// A remotable function: the kinds of its request's arguments, and how the
// main thread calls its export with them.
struct RemoteFunction {
    const WireKind* kinds;
    std::size_t arity;
    void (*invoke)(Call&);
};

// The alternatives stand in WireKind's order.
using WireValue = std::variant<std::uint64_t, std::int32_t, double, WireText, Slot<std::int32_t>, Slot<double>>;

struct Request {
    std::string name;
    // Null for a name that is no function of the API, or a function that is
    // not remotable: nothing is called and nothing is answered.
    const RemoteFunction* function = nullptr;
    std::vector<WireValue> args;
};

}  // namespace tvapic::server
