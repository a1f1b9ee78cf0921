// The server's live connections, at most kMaxConnections at once, so that
// a crowd cannot exhaust the application's sockets and memory. A stop
// closes them all.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace tvapic::server {

class Connection;

class ConnectionManager {
public:
    static constexpr std::size_t kMaxConnections = 64;

    enum class Room {
        Free,      // below the limit
        Made,      // the connection that had waited longest for bytes of its request was closed
        None,      // every connection is past its request: the new one is to be closed at once
    };
    // Makes room for one more connection, if need be by closing the one
    // that has waited longest for bytes of its request: a crowd of silent
    // connections gives way to newer clients instead of shutting them out.
    Room MakeRoom();

    void Add(std::shared_ptr<Connection> connection);
    void Remove(const Connection* connection);
    void CloseAll();

private:
    std::vector<std::shared_ptr<Connection>> connections_;
};

}  // namespace tvapic::server
