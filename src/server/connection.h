// One client's connection, from its accept to its close, on the server
// thread: its request is read as bytes arrive and decoded; only the export's
// call goes to the main thread; the response is encoded and written here.
// The connection keeps itself alive through its pending operations and its
// place among the server's live connections.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "server/asio.h"
#include "server/call.h"
#include "server/request_buffer.h"

namespace tvapic::server {

class Server;

class Connection : public std::enable_shared_from_this<Connection> {
public:
    using Clock = std::chrono::steady_clock;
    // The whole request must arrive within this time of the accept, and the
    // whole response leave within it of its first byte.
    static constexpr std::chrono::seconds kTimeLimit{10};

    Connection(boost::asio::ip::tcp::socket socket, Server& server);

    // Starts the request's deadline and reading.
    void Start();
    // Ends the connection at once, whatever it was doing, without a word.
    void Close();

    // Whether it still waits for bytes of its request, and since when.
    bool WaitingForRequest() const { return state_ == State::Reading; }
    Clock::time_point last_bytes() const { return last_bytes_; }

private:
    enum class State { Reading, Calling, Writing, Closed };

    void Read();
    void OnRead(const boost::system::error_code& error, std::size_t n);
    void Queue(Request request);
    void RunCall();  // on the main thread
    void Answer();
    void SetDeadline(Clock::time_point deadline);
    void OnDeadline(const boost::system::error_code& error);
    // Reports what went wrong (not when a stop cut the connection short) and closes.
    void Fail(const std::string& what);

    Server& server_;
    boost::asio::ip::tcp::socket socket_;
    boost::asio::steady_timer deadline_;
    State state_ = State::Reading;
    Clock::time_point last_bytes_;
    RequestBuffer request_;
    // Between the request and the response; the main thread has it while
    // the call is queued and running.
    std::optional<Call> call_;
    std::string call_error_;
    std::string response_;
};

}  // namespace tvapic::server
