// The bytes of one request as they arrive on its connection, fed to the
// decoder. It knows no socket: the connection reads into Room() and says how
// much arrived. Memory follows the bytes that arrive, never the counts a
// peer declares: the buffer grows by at most one piece per read.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "server/decoder.h"

namespace tvapic::server {

class RequestBuffer {
public:
    // The most one read takes, and the least it offers room for: a small
    // request sent whole arrives in one read.
    static constexpr std::size_t kReadPiece = 64 * 1024;
    static constexpr std::size_t kSmallRead = 4 * 1024;

    // Where the next bytes go: room for what the request lacks as far as it
    // is known, between a small read and a piece.
    std::span<char> Room();
    // `n` bytes arrived at the start of Room(). The request once it is
    // complete, an error once the bytes can never become one, and otherwise
    // the bytes it needs; they are decoded only once that many are there.
    // Bytes after a complete request are never looked at.
    Decoded Arrived(std::size_t n);

private:
    std::string bytes_;
    std::size_t used_ = 0;
    std::size_t needed_ = 0;
};

}  // namespace tvapic::server
