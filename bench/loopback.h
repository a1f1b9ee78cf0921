// Loopback pieces of the API Server benchmark: a client making one call per
// connection, and the bare server the library's server is measured against.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

#include <utility>  // Boost 1.74's Asio uses std::exchange without it under C++20
#include <boost/asio.hpp>

namespace bench {

// One call as the protocol has it: connect, send the request whole, read
// until the server closes. Returns the response.
class LoopbackClient {
public:
    explicit LoopbackClient(std::uint16_t port);
    std::string Call(const std::string& request);

private:
    boost::asio::io_context io_;
    boost::asio::ip::tcp::endpoint server_;
};

// The least a one-call-per-connection server can do, on its own thread:
// accept, read the request's bytes (name count, name, handle), write a
// 4-byte answer and close. No main-thread hop, no dispatch, no host.
class BareServer {
public:
    BareServer();
    ~BareServer();
    std::uint16_t port() const { return port_; }

private:
    void Serve();

    boost::asio::io_context io_;
    boost::asio::ip::tcp::acceptor acceptor_;
    std::uint16_t port_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

// A loopback port nobody listens on right now.
std::uint16_t FreePort();

}  // namespace bench
