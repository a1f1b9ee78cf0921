// The connection as the wire encoding sees it: exact reads and writes of
// bytes. The server runs it over a TCP socket; tests and the fuzzer over
// memory, with the same dispatcher and handlers.
#pragma once

#include <cstddef>

namespace tvapic::server {

class ByteStream {
public:
    virtual ~ByteStream() = default;
    // Reads exactly n bytes or raises a system error with the context "read".
    virtual void ReadExact(void* buffer, std::size_t n) = 0;
    // Writes exactly n bytes or raises a system error with the context "write".
    virtual void WriteExact(const void* data, std::size_t n) = 0;
    // Ends the connection; unread request bytes are discarded.
    virtual void Close() = 0;
};

}  // namespace tvapic::server
