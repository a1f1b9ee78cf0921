#include "bridge/socket_stream.h"

namespace tvapic::bridge {

namespace asio = boost::asio;

// The I/O context is the server's, run only by the server thread. A stop
// cancels the transfer under way by posting to it (see Server::Stop).
template <class Start>
std::size_t SocketStream::Await(Start start, Clock::time_point deadline, const char* what) {
    boost::system::error_code result = asio::error::would_block;
    std::size_t transferred = 0;
    start([&](const boost::system::error_code& error, std::size_t n) {
        result = error;
        transferred = n;
    });
    io_.restart();
    io_.run_until(deadline);
    if (result == asio::error::would_block) {
        boost::system::error_code ignored;
        socket_.cancel(ignored);
        io_.restart();
        io_.run();  // lets the cancelled operation finish
        throw boost::system::system_error(asio::error::timed_out, what);
    }
    if (result) throw boost::system::system_error(result, what);
    return transferred;
}

void SocketStream::ReadExact(void* buffer, std::size_t n) {
    auto* at = static_cast<char*>(buffer);
    while (n > 0) {
        std::size_t got =
            Await([&](auto done) { socket_.async_read_some(asio::buffer(at, n), done); }, read_deadline_, "read");
        at += got;
        n -= got;
    }
}

void SocketStream::WriteExact(const void* data, std::size_t n) {
    if (!write_deadline_) write_deadline_ = Clock::now() + kTimeLimit;
    auto* at = static_cast<const char*>(data);
    while (n > 0) {
        std::size_t sent =
            Await([&](auto done) { socket_.async_write_some(asio::buffer(at, n), done); }, *write_deadline_, "write");
        at += sent;
        n -= sent;
    }
}

void SocketStream::Close() {
    boost::system::error_code ignored;
    socket_.close(ignored);
}

}  // namespace tvapic::bridge
