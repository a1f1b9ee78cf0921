#include "server/server.h"

#include <exception>
#include <system_error>

#include "UI_App/GuiApp.h"
#include "server/connection.h"

namespace tvapic::server {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

// A port left in TIME_WAIT by an earlier run can be bound again at once. On
// Windows SO_REUSEADDR would also let the listener bind over a port another
// program listens on, and share its connections; there, exclusive use gives
// what address reuse gives elsewhere, and a port in use is refused.
void ReuseAddress(tcp::acceptor& acceptor) {
#if defined(_WIN32)
    acceptor.set_option(asio::detail::socket_option::boolean<SOL_SOCKET, SO_EXCLUSIVEADDRUSE>(true));
#else
    acceptor.set_option(asio::socket_base::reuse_address(true));
#endif
}

std::string Describe(const error_code& error, const char* what) { return boost::system::system_error(error, what).what(); }

}  // namespace

Server& Server::Instance() {
    static auto* server = new Server;
    return *server;
}

bool Server::Start(std::uint16_t port) {
    std::lock_guard lifecycle(lifecycle_);
    if (!GuiApp()->UseStartPort()) {
        if (port == 0) return false;
        port_ = port;
    }
    try {
        // Assigning over a thread that is still held terminates the process:
        // starting twice without a stop is the host's programming error.
        thread_ = std::thread([this] { ServerThreadFunc(); });
        running_ = true;
        return true;
    } catch (const std::system_error&) {
        return false;  // no thread could be made: the server simply does not run
    }
}

void Server::ServerThreadFunc() {
    io_.restart();  // after a stop the context has stopped; nothing else runs it now
    if (!Listen()) return;
    Accept();
    RunIo();
}

bool Server::Listen() {
    try {
        tcp::endpoint endpoint(asio::ip::address_v4::any(), port_);
        acceptor_.open(endpoint.protocol());
        ReuseAddress(acceptor_);
        acceptor_.bind(endpoint);
        acceptor_.listen(0x7FFFFFFF);
        return true;
    } catch (const boost::system::system_error& e) {
        // A port already taken must not end the application that holds the
        // user's work: the server simply does not run.
        Report(e.what());
        error_code ignored;
        acceptor_.close(ignored);
        return false;
    }
}

void Server::Accept() {
    acceptor_.async_accept([this](const error_code& error, tcp::socket socket) { OnAccept(error, std::move(socket)); });
}

void Server::OnAccept(const error_code& error, tcp::socket socket) {
    if (!acceptor_.is_open()) return;  // shut down
    if (stop_) {
        // A start after a stop: its first connection ends it, unserved.
        error_code ignored;
        acceptor_.close(ignored);
        return;
    }
    if (error) {
        Report(Describe(error, "accept"));
        accept_retry_.expires_after(kAcceptRetry);
        accept_retry_.async_wait([this](const error_code& cancelled) {
            if (!cancelled) Accept();
        });
        return;
    }
    Admit(std::move(socket));
    Accept();
}

void Server::Admit(tcp::socket socket) {
    switch (connections_.MakeRoom()) {
        case ConnectionManager::Room::None: {
            Report("connection limit of " + std::to_string(ConnectionManager::kMaxConnections) +
                   " reached: a new connection was closed");
            return;  // the socket closes here
        }
        case ConnectionManager::Room::Made:
            Report("connection limit of " + std::to_string(ConnectionManager::kMaxConnections) +
                   " reached: the connection silent longest was closed");
            break;
        case ConnectionManager::Room::Free: break;
    }
    auto connection = std::make_shared<Connection>(std::move(socket), *this);
    connections_.Add(connection);
    connection->Start();
}

void Server::RunIo() {
    for (;;) {
        try {
            io_.run();
            return;
        } catch (const std::exception& e) {
            Report(e.what());
        } catch (...) {
            Report("an error that is not a standard one");
        }
    }
}

void Server::Report(const std::string& what) {
    report_.Add(what, ErrorReport::Clock::now());
    FlushReportWhenDue();
}

// The counts of repeated errors are written when their second is over; the
// timer runs only while a count is held.
void Server::FlushReportWhenDue() {
    if (report_flush_due_) return;
    std::optional<ErrorReport::Clock::time_point> due = report_.Flush(ErrorReport::Clock::now());
    if (!due) return;
    report_flush_due_ = true;
    report_flush_.expires_at(*due);
    report_flush_.async_wait([this](const error_code&) {
        report_flush_due_ = false;
        if (!stop_) FlushReportWhenDue();
    });
}

void Server::Shutdown() {
    error_code ignored;
    acceptor_.close(ignored);
    accept_retry_.cancel();
    report_flush_.cancel();
    connections_.CloseAll();
    report_.FlushAll();
}

void Server::Stop() {
    std::lock_guard lifecycle(lifecycle_);
    if (!running_) return;
    stop_ = true;
    // Taken first, ended last: the main thread runs none of these now.
    auto dropped = main_thread_.TakeAll();
    try {
        asio::post(io_, [this] { Shutdown(); });
        if (thread_.joinable()) thread_.join();
        thread_ = std::thread();
        // Nothing else runs the context now. What is left in it (the
        // shutdown, if the thread had ended already; the answer to a call
        // that was running) runs here, cut short by the stop.
        io_.restart();
        io_.poll();
    } catch (const std::exception& e) {
        ErrorReport::WriteLine(std::string("API Server: ") + e.what());  // the thread may still run: not through report_
    }
}

}  // namespace tvapic::server
