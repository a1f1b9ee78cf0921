#include "bridge/socket_stream.h"

namespace tvapic::bridge {

namespace asio = boost::asio;

// The I/O context is the server's; while a call runs on the main thread the
// server thread only waits for it, so the context is this thread's to run.
template <class Start>
std::size_t SocketStream::Await(Start start, const char* what) {
    boost::system::error_code result = asio::error::would_block;
    std::size_t transferred = 0;
    start([&](const boost::system::error_code& error, std::size_t n) {
        result = error;
        transferred = n;
    });
    io_.restart();
    io_.run_for(kSilenceLimit);
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
        std::size_t got = Await([&](auto done) { socket_.async_read_some(asio::buffer(at, n), done); }, "read");
        at += got;
        n -= got;
    }
}

void SocketStream::WriteExact(const void* data, std::size_t n) {
    auto* at = static_cast<const char*>(data);
    while (n > 0) {
        std::size_t sent = Await([&](auto done) { socket_.async_write_some(asio::buffer(at, n), done); }, "write");
        at += sent;
        n -= sent;
    }
}

void SocketStream::Close() {
    boost::system::error_code ignored;
    socket_.close(ignored);
}

}  // namespace tvapic::bridge
