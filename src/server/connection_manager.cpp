#include "server/connection_manager.h"

#include <algorithm>

#include "server/connection.h"

namespace tvapic::server {

ConnectionManager::Room ConnectionManager::MakeRoom() {
    if (connections_.size() < kMaxConnections) return Room::Free;
    Connection* longest = nullptr;
    for (const auto& c : connections_) {
        if (c->WaitingForRequest() && (!longest || c->last_bytes() < longest->last_bytes())) longest = c.get();
    }
    if (!longest) return Room::None;
    longest->Close();
    return Room::Made;
}

void ConnectionManager::Add(std::shared_ptr<Connection> connection) { connections_.push_back(std::move(connection)); }

void ConnectionManager::Remove(const Connection* connection) {
    std::erase_if(connections_, [connection](const auto& c) { return c.get() == connection; });
}

void ConnectionManager::CloseAll() {
    auto closing = std::move(connections_);
    connections_.clear();
    for (const auto& c : closing) c->Close();
}

}  // namespace tvapic::server
