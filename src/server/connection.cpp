#include "server/connection.h"

#include <exception>

#include "server/server.h"

namespace tvapic::server {

namespace asio = boost::asio;
using boost::system::error_code;

Connection::Connection(asio::ip::tcp::socket socket, Server& server)
    : server_(server), socket_(std::move(socket)), deadline_(server.io()) {}

void Connection::Start() {
    last_bytes_ = Clock::now();
    SetDeadline(last_bytes_ + kTimeLimit);
    Read();
}

void Connection::Read() {
    std::span<char> room = request_.Room();
    socket_.async_read_some(asio::buffer(room.data(), room.size()),
                            [self = shared_from_this()](const error_code& error, std::size_t n) { self->OnRead(error, n); });
}

void Connection::OnRead(const error_code& error, std::size_t n) {
    if (state_ == State::Closed) return;
    if (error) return Fail(boost::system::system_error(error, "read").what());
    last_bytes_ = Clock::now();
    Decoded decoded = request_.Arrived(n);
    if (std::holds_alternative<NeedBytes>(decoded)) return Read();
    if (const auto* bad = std::get_if<DecodeError>(&decoded)) return Fail(bad->what);
    request_ = RequestBuffer();  // the request's values are its own now
    Request& request = std::get<Request>(decoded);
    // A name that selects no remotable function is answered with nothing.
    if (!request.function) return Close();
    Queue(std::move(request));
}

// While the main thread has the call, no deadline runs: it may be busy for
// as long as the application needs.
void Connection::Queue(Request request) {
    call_.emplace(std::move(request));
    state_ = State::Calling;
    deadline_.cancel();
    try {
        server_.main_thread().Queue([self = shared_from_this()] { self->RunCall(); });
    } catch (const std::exception& e) {
        Fail(e.what());
    }
}

void Connection::RunCall() {
    try {
        call_->Run();
    } catch (const std::exception& e) {
        call_error_ = e.what();
    } catch (...) {
        call_error_ = "the call raised an error that is not a standard one";
    }
    asio::post(server_.io(), [self = shared_from_this()] { self->Answer(); });
}

void Connection::Answer() {
    if (state_ == State::Closed) return;  // stopped meanwhile
    if (!call_error_.empty()) return Fail(call_error_);
    try {
        response_ = call_->Response();
    } catch (const std::exception& e) {
        return Fail(e.what());  // text the export returned that is not UTF-16
    }
    call_.reset();
    if (response_.empty()) return Close();
    state_ = State::Writing;
    SetDeadline(Clock::now() + kTimeLimit);
    asio::async_write(socket_, asio::buffer(response_), [self = shared_from_this()](const error_code& error, std::size_t) {
        if (self->state_ == State::Closed) return;
        if (error) return self->Fail(boost::system::system_error(error, "write").what());
        self->Close();
    });
}

void Connection::SetDeadline(Clock::time_point deadline) {
    deadline_.expires_at(deadline);
    deadline_.async_wait([self = shared_from_this()](const error_code& error) { self->OnDeadline(error); });
}

void Connection::OnDeadline(const error_code& error) {
    // A wait that was cancelled, or that had already ended when the deadline moved.
    if (error || state_ == State::Closed || state_ == State::Calling || deadline_.expiry() > Clock::now()) return;
    Fail(boost::system::system_error(asio::error::timed_out, state_ == State::Writing ? "write" : "read").what());
}

void Connection::Fail(const std::string& what) {
    if (!server_.stopping()) server_.Report(what);
    Close();
}

void Connection::Close() {
    if (state_ == State::Closed) return;
    auto self = shared_from_this();  // the server's list may hold the last reference
    state_ = State::Closed;
    error_code ignored;
    socket_.close(ignored);  // unread request bytes are discarded
    deadline_.cancel();
    server_.connections().Remove(this);
}

}  // namespace tvapic::server
