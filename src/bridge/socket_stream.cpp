#include "bridge/socket_stream.h"

namespace tvapic::bridge {

void SocketStream::ReadExact(void* buffer, std::size_t n) {
    boost::system::error_code error;
    boost::asio::read(socket_, boost::asio::buffer(buffer, n), error);
    if (error) throw boost::system::system_error(error, "read");
}

void SocketStream::WriteExact(const void* data, std::size_t n) {
    boost::system::error_code error;
    boost::asio::write(socket_, boost::asio::buffer(data, n), error);
    if (error) throw boost::system::system_error(error, "write");
}

void SocketStream::Close() {
    boost::system::error_code ignored;
    socket_.close(ignored);
}

}  // namespace tvapic::bridge
