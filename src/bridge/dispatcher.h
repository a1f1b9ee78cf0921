// The name dispatcher: reads a request's function name, runs its handler,
// closes the connection.
#pragma once

#include <string_view>

#include "bridge/stream.h"

namespace tvapic::bridge {

using Handler = void (*)(ByteStream&);

// The handler of a remotable function; the empty handler for any other
// function of the API; null for a name that is no function at all. Names
// are compared byte for byte.
Handler FindHandler(std::string_view name);

// Serves one request. Unknown names and functions that are not remotable
// read nothing more and write nothing. The connection is closed at the end.
void Dispatch(ByteStream& connection);

// Generated: the number of remotable functions and of names in the table.
std::size_t RemotableCount();
std::size_t NameCount();

}  // namespace tvapic::bridge
