// Decoding a request: a pure function of the bytes received so far. It
// knows no socket and no host; the server thread feeds it as bytes arrive.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "server/request.h"

namespace tvapic::server {

// The request is not complete: decoding goes on once `total` bytes are there.
struct NeedBytes {
    std::size_t total;
};

// The bytes can never become a request (a count over its limit, text that
// is not UTF-8); `what` is the server's description of it.
struct DecodeError {
    std::string what;
};

using Decoded = std::variant<Request, NeedBytes, DecodeError>;

// The name first; then, for a remotable function, its arguments as its wire
// signature lists them. A name that selects no remotable function completes
// the request at once. Bytes beyond the request are not looked at. Counts
// are checked against their limits as soon as they are there; texts are
// converted once the whole request is.
Decoded Decode(std::string_view bytes);

}  // namespace tvapic::server
