#include "loopback.h"

#include <cstring>

namespace bench {

namespace asio = boost::asio;
using asio::ip::tcp;

LoopbackClient::LoopbackClient(std::uint16_t port) : server_(asio::ip::make_address_v4("127.0.0.1"), port) {}

std::string LoopbackClient::Call(const std::string& request) {
    tcp::socket socket(io_);
    socket.connect(server_);
    asio::write(socket, asio::buffer(request));
    std::string response;
    char buffer[256];
    for (;;) {
        boost::system::error_code error;
        std::size_t n = socket.read_some(asio::buffer(buffer), error);
        response.append(buffer, n);
        if (error) break;  // the server's close, or a reset after the response
    }
    return response;
}

BareServer::BareServer() : acceptor_(io_, tcp::endpoint(asio::ip::address_v4::loopback(), 0)) {
    port_ = acceptor_.local_endpoint().port();
    thread_ = std::thread([this] { Serve(); });
}

BareServer::~BareServer() {
    stop_ = true;
    LoopbackClient(port_).Call(std::string(8, '\0'));  // wakes the accept
    thread_.join();
}

void BareServer::Serve() {
    for (;;) {
        tcp::socket connection(io_);
        acceptor_.accept(connection);
        if (stop_) return;
        boost::system::error_code error;
        std::uint64_t name_bytes = 0;
        asio::read(connection, asio::buffer(&name_bytes, sizeof name_bytes), error);
        if (error || name_bytes > 4096) continue;
        char name[4096];
        asio::read(connection, asio::buffer(name, name_bytes), error);
        std::uint64_t handle = 0;
        if (!error) asio::read(connection, asio::buffer(&handle, sizeof handle), error);
        const std::int32_t answer = 7;
        if (!error) asio::write(connection, asio::buffer(&answer, sizeof answer), error);
        connection.close(error);
    }
}

std::uint16_t FreePort() {
    asio::io_context io;
    tcp::acceptor probe(io, tcp::endpoint(asio::ip::address_v4::loopback(), 0));
    return probe.local_endpoint().port();
}

}  // namespace bench
