// A ByteStream over a connected Boost.Asio TCP socket, with one deadline for
// the whole request and one for the whole response: a client that sends or
// reads slowly, or stops, is dropped at the deadline rather than holding the
// server and every client behind it.
#pragma once

#include <chrono>
#include <optional>

#include "server/asio.h"
#include "server/stream.h"

namespace tvapic::server {

class SocketStream final : public ByteStream {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kTimeLimit{10};

    // The request's deadline runs from now (the accept); the response's from
    // its first write.
    SocketStream(boost::asio::io_context& io, boost::asio::ip::tcp::socket& socket)
        : io_(io), socket_(socket), read_deadline_(Clock::now() + kTimeLimit) {}

    void ReadExact(void* buffer, std::size_t n) override;
    void WriteExact(const void* data, std::size_t n) override;
    void Close() override;

private:
    // Waits, until the deadline, for the socket to be ready.
    template <class Start>
    void Await(Start start, Clock::time_point deadline, const char* what);

    boost::asio::io_context& io_;
    boost::asio::ip::tcp::socket& socket_;
    Clock::time_point read_deadline_;
    std::optional<Clock::time_point> write_deadline_;
};

}  // namespace tvapic::server
