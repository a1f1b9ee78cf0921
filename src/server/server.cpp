#include "server/server.h"

#include <cstdio>
#include <exception>
#include <system_error>

#include "UI_App/GuiApp.h"
#include "server/connection.h"
#include "server/main_thread.h"
#include "server/socket_stream.h"

namespace tvapic::server {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

void Report(const char* what) {
    std::fprintf(stderr, "API Server: %s\n", what);
    std::fflush(stderr);
}

// A port left in TIME_WAIT by an earlier run can be bound again at once. On
// Windows SO_REUSEADDR would also let the listener bind over a port another
// program listens on, and share its connections; there, exclusive use gives
// what address reuse gives elsewhere, and a port in use is refused.
void ReuseAddress(tcp::acceptor& acceptor) {
#if defined(_WIN32)
    acceptor.set_option(asio::detail::socket_option::boolean<SOL_SOCKET, SO_EXCLUSIVEADDRUSE>(true));
#else
    acceptor.set_option(asio::socket_base::reuse_address(true));
#endif
}

}  // namespace

Server& Server::Instance() {
    static Server server;
    return server;
}

bool Server::Start(std::uint16_t port) {
    if (!GuiApp()->UseStartPort()) {
        if (port == 0) return false;
        port_ = port;
    }
    SetListening(Listening::Pending);
    try {
        // Assigning over a thread that is still held terminates the process:
        // starting twice without a stop is the host's programming error.
        thread_ = std::thread([this] { ServerThreadFunc(); });
        running_ = true;
        return true;
    } catch (const std::system_error&) {
        // No thread could be made: the server simply does not run.
        SetListening(Listening::No);
        return false;
    }
}

void Server::SetListening(Listening state) {
    {
        std::lock_guard lock(listening_mutex_);
        listening_ = state;
    }
    listening_changed_.notify_all();
}

bool Server::Listen(tcp::acceptor& acceptor) {
    try {
        tcp::endpoint endpoint(asio::ip::address_v4::any(), port_);
        acceptor.open(endpoint.protocol());
        ReuseAddress(acceptor);
        acceptor.bind(endpoint);
        acceptor.listen(0x7FFFFFFF);
        return true;
    } catch (const boost::system::system_error& e) {
        // A port already taken must not end the application that holds the
        // user's work: the server simply does not run.
        Report(e.what());
        return false;
    }
}

void Server::ServerThreadFunc() {
    tcp::acceptor acceptor(io_);
    bool listening = Listen(acceptor);
    SetListening(listening ? Listening::Yes : Listening::No);
    if (!listening) return;
    for (;;) {
        try {
            boost::system::error_code error;
            acceptor.accept(connection_, error);
            if (error) throw boost::system::system_error(error, "accept");
            if (stop_) {
                acceptor.close();
                connection_.close(error);
                return;
            }
            Serve();
        } catch (const std::exception& e) {
            // A stop that cut a connection short is no fault of that client's.
            if (!stop_) Report(e.what());
        }
        boost::system::error_code ignored;
        connection_.close(ignored);  // also after a failed call: the socket serves the next one
    }
}

void Server::Serve() {
    SocketStream stream(io_, connection_);
    ServeConnection(stream, [this](std::function<void()> work) { return RunOnMainThread(std::move(work), stop_); });
}

void Server::Stop() {
    if (!running_) return;
    stop_ = true;
    {
        std::unique_lock lock(listening_mutex_);
        listening_changed_.wait(lock, [this] { return listening_ != Listening::Pending; });
        if (listening_ == Listening::No) {
            // The thread ended without listening: there is nobody to wake,
            // and whoever holds the port is none of ours.
            lock.unlock();
            if (thread_.joinable()) thread_.join();
            thread_ = std::thread();
            return;
        }
    }
    // A transfer under way ends now rather than at its deadline: the stop
    // may come from the main thread, which must not wait on a client.
    asio::post(io_, [this] {
        boost::system::error_code ignored;
        connection_.cancel(ignored);
    });
    asio::io_context wake_io;
    tcp::socket wake(wake_io);
    wake.connect(tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port_));
    const std::uint32_t zero = 0;
    asio::write(wake, asio::buffer(&zero, sizeof zero));
    thread_.join();
    thread_ = std::thread();
    boost::system::error_code ignored;
    wake.close(ignored);
}

}  // namespace tvapic::server
