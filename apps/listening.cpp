#include "listening.h"

#include <utility>  // before Asio: Debian's Boost 1.74 needs it under C++20

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <chrono>
#include <thread>

namespace asio = boost::asio;
using asio::ip::tcp;

std::uint16_t ReservePort(std::uint16_t port, std::string& error) {
    asio::io_context io;
    tcp::acceptor acceptor(io);
    boost::system::error_code failure;
    tcp::endpoint endpoint(asio::ip::address_v4::any(), port);
    acceptor.open(endpoint.protocol(), failure);
#if defined(_WIN32)
    // As the server does on Windows: exclusive use, so a port in use is refused.
    if (!failure) acceptor.set_option(asio::detail::socket_option::boolean<SOL_SOCKET, SO_EXCLUSIVEADDRUSE>(true), failure);
#else
    if (!failure) acceptor.set_option(asio::socket_base::reuse_address(true), failure);
#endif
    if (!failure) acceptor.bind(endpoint, failure);
    if (failure) {
        error = failure.message();
        return 0;
    }
    std::uint16_t bound = acceptor.local_endpoint(failure).port();
    if (failure) error = failure.message();
    return failure ? 0 : bound;
}

bool ConfirmListening(std::uint16_t port, double seconds) {
    auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    const tcp::endpoint server(asio::ip::make_address_v4("127.0.0.1"), port);
    for (;;) {
        asio::io_context io;
        tcp::socket socket(io);
        boost::system::error_code failure;
        socket.connect(server, failure);
        if (!failure) {
            // The call runs once the main loop does; the bytes wait for it.
            const unsigned char empty_name[8] = {};
            asio::write(socket, asio::buffer(empty_name), failure);
            return true;
        }
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}
