#include "server/socket_stream.h"

namespace tvapic::server {

namespace asio = boost::asio;

// The I/O context is the server's, run only by the server thread. A stop
// cancels the wait under way by posting to it (see Server::Stop).
template <class Start>
void SocketStream::Await(Start start, Clock::time_point deadline, const char* what) {
    boost::system::error_code result = asio::error::would_block;
    start([&](const boost::system::error_code& error) { result = error; });
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
}

// Bytes that are already there are taken at once; only when the socket has
// none (or no room) does the transfer wait, for readiness, until the deadline.
void SocketStream::ReadExact(void* buffer, std::size_t n) {
    socket_.non_blocking(true);
    auto* at = static_cast<char*>(buffer);
    while (n > 0) {
        boost::system::error_code error;
        std::size_t got = socket_.read_some(asio::buffer(at, n), error);
        if (error == asio::error::would_block) {
            Await([&](auto done) { socket_.async_wait(asio::socket_base::wait_read, done); }, read_deadline_, "read");
            continue;
        }
        if (error) throw boost::system::system_error(error, "read");
        at += got;
        n -= got;
    }
}

void SocketStream::WriteExact(const void* data, std::size_t n) {
    if (!write_deadline_) write_deadline_ = Clock::now() + kTimeLimit;
    socket_.non_blocking(true);
    auto* at = static_cast<const char*>(data);
    while (n > 0) {
        boost::system::error_code error;
        std::size_t sent = socket_.write_some(asio::buffer(at, n), error);
        if (error == asio::error::would_block) {
            Await([&](auto done) { socket_.async_wait(asio::socket_base::wait_write, done); }, *write_deadline_, "write");
            continue;
        }
        if (error) throw boost::system::system_error(error, "write");
        at += sent;
        n -= sent;
    }
}

void SocketStream::Close() {
    boost::system::error_code ignored;
    socket_.close(ignored);
}

}  // namespace tvapic::server
