// The remote call server ("API Server"): a TCP listener on its own thread,
// one connection at a time, each call run on the host's main thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "bridge/asio.h"

namespace tvapic::bridge {

class Server {
public:
    static constexpr std::uint16_t kDefaultPort = 8001;

    static Server& Instance();

    // Starts the server thread. Whether `port` replaces the stored port is
    // the host UI's yes/no answer; a "no" with port 0 starts nothing. A
    // second start without a stop ends the process.
    void Start(std::uint16_t port);
    // Sets the stop flag, wakes the accept with a connection of its own and
    // joins the thread. Does nothing if the server never started.
    void Stop();

    std::uint16_t port() const { return port_; }

private:
    Server() = default;
    // At unload a thread may still be held (a restart that ended at its first
    // accept, or a host that never stopped): let it go rather than end the
    // process; joining could wait for ever.
    ~Server() {
        if (thread_.joinable()) thread_.detach();
    }
    void ServerThreadFunc();
    void Serve();

    // Neither flag is ever cleared: the server runs once per library
    // lifetime. A later start makes a thread that ends at its first accept.
    std::atomic<bool> running_{false};
    std::atomic<bool> stop_{false};
    std::atomic<std::uint16_t> port_{kDefaultPort};
    std::thread thread_;
    boost::asio::io_context io_;
    boost::asio::ip::tcp::socket connection_{io_};
};

}  // namespace tvapic::bridge
