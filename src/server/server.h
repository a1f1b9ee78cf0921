// The remote call server ("API Server"): a TCP listener on its own thread,
// one connection at a time, each export call run on the host's main thread.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "server/asio.h"

namespace tvapic::server {

class Server {
public:
    static constexpr std::uint16_t kDefaultPort = 8001;

    static Server& Instance();

    // Starts the server thread; true when one was started. Whether `port`
    // replaces the stored port is the host UI's yes/no answer; a "no" with
    // port 0 starts nothing. A second start without a stop ends the process.
    bool Start(std::uint16_t port);
    // Sets the stop flag, wakes the accept with a connection of its own and
    // joins the thread. Does nothing if the server never started; connects to
    // nobody if the thread could not listen.
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
    // Opens, binds and listens; false, with the error written to the
    // standard error stream, when the port cannot be had.
    bool Listen(boost::asio::ip::tcp::acceptor& acceptor);
    void Serve();

    // How the server thread's attempt to listen ended; the stop waits for it.
    enum class Listening { Pending, Yes, No };
    void SetListening(Listening state);

    // Neither flag is ever cleared: the server runs once per library
    // lifetime. A later start makes a thread that ends at its first accept.
    std::atomic<bool> running_{false};
    std::atomic<bool> stop_{false};
    std::atomic<std::uint16_t> port_{kDefaultPort};
    std::thread thread_;
    std::mutex listening_mutex_;
    std::condition_variable listening_changed_;
    Listening listening_ = Listening::Pending;
    boost::asio::io_context io_;
    boost::asio::ip::tcp::socket connection_{io_};
};

}  // namespace tvapic::server
