// A ByteStream over a connected Boost.Asio TCP socket. Every read and write
// must make progress within the silence limit: a client that stops sending
// (or receiving) mid-call is dropped rather than holding the main thread.
#pragma once

#include <chrono>

#include "bridge/asio.h"
#include "bridge/stream.h"

namespace tvapic::bridge {

class SocketStream final : public ByteStream {
public:
    static constexpr std::chrono::seconds kSilenceLimit{10};

    SocketStream(boost::asio::io_context& io, boost::asio::ip::tcp::socket& socket) : io_(io), socket_(socket) {}

    void ReadExact(void* buffer, std::size_t n) override;
    void WriteExact(const void* data, std::size_t n) override;
    void Close() override;

private:
    // Runs one asynchronous transfer to its end or to the silence limit.
    template <class Start>
    std::size_t Await(Start start, const char* what);

    boost::asio::io_context& io_;
    boost::asio::ip::tcp::socket& socket_;
};

}  // namespace tvapic::bridge
