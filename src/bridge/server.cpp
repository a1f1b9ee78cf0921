#include "bridge/server.h"

#include <cstdio>
#include <exception>
#include <system_error>

#include "UI_App/GuiApp.h"
#include "bridge/dispatcher.h"
#include "bridge/main_thread.h"
#include "bridge/socket_stream.h"

namespace tvapic::bridge {

namespace asio = boost::asio;
using asio::ip::tcp;

Server& Server::Instance() {
    static Server server;
    return server;
}

void Server::Start(std::uint16_t port) {
    if (!GuiApp()->UseStartPort()) {
        if (port == 0) return;
        port_ = port;
    }
    try {
        // Assigning over a thread that is still held terminates the process:
        // starting twice without a stop is the host's programming error.
        thread_ = std::thread([this] { ServerThreadFunc(); });
        running_ = true;
    } catch (const std::system_error&) {
        // No thread could be made: the server simply does not run.
    }
}

void Server::ServerThreadFunc() {
    tcp::acceptor acceptor(io_);
    tcp::endpoint endpoint(asio::ip::address_v4::any(), port_);
    // Open, bind and listen failures are not caught: they end the process.
    acceptor.open(endpoint.protocol());
    acceptor.set_option(asio::socket_base::reuse_address(true));
    acceptor.bind(endpoint);
    acceptor.listen(0x7FFFFFFF);
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
            std::fprintf(stderr, "API Server: %s\n", e.what());
            std::fflush(stderr);
        }
        boost::system::error_code ignored;
        connection_.close(ignored);  // also after a failed call: the socket serves the next one
    }
}

void Server::Serve() {
    RunOnMainThread([this] {
        SocketStream stream(io_, connection_);
        Dispatch(stream);
        return true;
    });
}

void Server::Stop() {
    if (!running_) return;
    stop_ = true;
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

}  // namespace tvapic::bridge
