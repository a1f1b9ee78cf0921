// The remote call server ("API Server"): one thread of its own runs every
// connection at once on one I/O context: the acceptor, each connection's
// reads, writes and deadlines. Each call runs on the host's main thread.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

#include "server/asio.h"
#include "server/connection_manager.h"
#include "server/error_report.h"
#include "server/main_thread.h"

namespace tvapic::server {

class Server {
public:
    static constexpr std::uint16_t kDefaultPort = 8001;
    // The pause before the next accept after a failed one (no socket left, say).
    static constexpr std::chrono::milliseconds kAcceptRetry{100};

    // Never destroyed: at process exit the server thread may still run, and
    // nothing it uses may go from under it.
    static Server& Instance();

    // Starts the server thread; true when one was started. Whether `port`
    // replaces the stored port is the host UI's yes/no answer; a "no" with
    // port 0 starts nothing. A second start without a stop ends the process.
    bool Start(std::uint16_t port);
    // Closes the listener and every connection through the I/O context and
    // joins the thread, which never waits on a client or the main thread;
    // queued calls the main thread has not begun are dropped. Raises nothing.
    void Stop();

    // The entry object's run operation, on the main thread.
    void RunPostedCalls(std::int64_t posted) { main_thread_.Run(posted); }

    // For the connections, on the server thread.
    boost::asio::io_context& io() { return io_; }
    MainThreadCalls& main_thread() { return main_thread_; }
    ConnectionManager& connections() { return connections_; }
    bool stopping() const { return stop_; }
    void Report(const std::string& what);

private:
    Server() = default;
    void ServerThreadFunc();
    // Opens, binds and listens; false, with the error reported, when the
    // port cannot be had.
    bool Listen();
    void Accept();
    void OnAccept(const boost::system::error_code& error, boost::asio::ip::tcp::socket socket);
    void Admit(boost::asio::ip::tcp::socket socket);
    // Runs the I/O context until it has nothing left to do; an error that
    // escapes a handler is reported and the context runs on.
    void RunIo();
    void Shutdown();
    void FlushReportWhenDue();

    std::mutex lifecycle_;  // one start or stop at a time
    // Neither flag is ever cleared: the server runs once per library
    // lifetime. A later start listens, and ends at its first connection.
    std::atomic<bool> running_{false};
    std::atomic<bool> stop_{false};
    std::atomic<std::uint16_t> port_{kDefaultPort};
    std::thread thread_;

    boost::asio::io_context io_{1};
    boost::asio::ip::tcp::acceptor acceptor_{io_};
    boost::asio::steady_timer accept_retry_{io_};
    boost::asio::steady_timer report_flush_{io_};
    bool report_flush_due_ = false;
    ErrorReport report_;
    ConnectionManager connections_;
    MainThreadCalls main_thread_;
};

}  // namespace tvapic::server
