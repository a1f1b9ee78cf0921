// Serving one connection, on the server thread: the whole request is read
// and decoded here, only the export's call goes to the main thread, and the
// response is encoded and written here.
#pragma once

#include <functional>

#include "server/request.h"
#include "server/stream.h"

namespace tvapic::server {

// Reads one request: exactly the bytes the decoder asks for, in pieces of at
// most 64 KiB, so that memory follows the bytes that arrive and not the
// counts a peer declares. A short read, and bytes that can never become a
// request, raise.
Request ReadRequest(ByteStream& connection);

// Runs the call on the main thread and reports whether it ran.
using MainThreadRunner = std::function<bool(std::function<void()>)>;

// Reads the request, has the main thread run its export, writes the response
// and closes the connection. A name that selects no remotable function is
// answered with nothing. A call the runner dropped is answered with nothing.
void ServeConnection(ByteStream& connection, const MainThreadRunner& run_on_main_thread);

}  // namespace tvapic::server
