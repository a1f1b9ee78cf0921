// A ByteStream over a connected Boost.Asio TCP socket, blocking.
#pragma once

#include "bridge/asio.h"
#include "bridge/stream.h"

namespace tvapic::bridge {

class SocketStream final : public ByteStream {
public:
    explicit SocketStream(boost::asio::ip::tcp::socket& socket) : socket_(socket) {}

    void ReadExact(void* buffer, std::size_t n) override;
    void WriteExact(const void* data, std::size_t n) override;
    void Close() override;

private:
    boost::asio::ip::tcp::socket& socket_;
};

}  // namespace tvapic::bridge
