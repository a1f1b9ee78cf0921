// A running API Server for one test: the library (linked into the test program)
// registered its entry object on load; the fixture starts the API Server on
// a free port, runs a main loop on a thread of its own as the host's main
// thread, and talks to the server as a client would, over loopback.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "server/asio.h"
#include "shell/main_loop.h"
#include "tvSys2/entry_points.h"

namespace server_test {

// The entry object of the library, loaded once per process as the host does.
tvapic::ITvAPICEntry* LoadedEntry();

// Whether something accepts connections on the port (connects once; the
// connection may stay pending in the listener's queue).
bool Listening(std::uint16_t port);

// Waits until the server has served one call, so that no connection of ours
// is left pending (a pending one would take a stop's place).
bool WaitUntilServing(std::uint16_t port);

// A port nobody listens on right now.
std::uint16_t FreePort();

// Starts the API Server on a free port, the host answering "no" (use the
// port given); the port once it serves (an empty name is served on the
// server thread alone), 0 if it does not.
std::uint16_t StartOnFreePort(tvapic::ITvAPICEntry* entry);

// One call: connects, sends `request` whole and shuts its sending side,
// reads until the server closes.
// A reset after the response counts as its end.
std::string Call(std::uint16_t port, const std::string& request);

// One call that gives up after `limit`: the response, or nothing when the
// server has not closed the connection by then. Without `half_close` the
// client never tells the server that its request is complete.
std::optional<std::string> CallWithin(std::uint16_t port, const std::string& request, std::chrono::milliseconds limit,
                                      bool half_close = true);

// `count` connections to the port, made one after the other, that send nothing.
std::vector<std::unique_ptr<boost::asio::ip::tcp::socket>> Connect(boost::asio::io_context& io, std::uint16_t port,
                                                                   int count);

// The most memory the process has held resident so far, in KiB.
std::size_t PeakMemoryKiB();

// Request pieces, little-endian.
std::string U64(std::uint64_t v);
std::string I32(std::int32_t v);
std::string F64(double v);
std::string Text(const std::string& utf8);  // count + bytes
inline std::string Name(const std::string& name) { return Text(name); }
inline std::string Handle(const void* p) { return U64(reinterpret_cast<std::uintptr_t>(p)); }

// Collects what the library writes to the standard error stream.
class StderrCapture {
public:
    StderrCapture();
    ~StderrCapture();
    std::string Text();

private:
    int saved_;
    std::FILE* file_;
};

class ServerTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    std::string Call(const std::string& request) { return server_test::Call(port_, request); }
    tvapic::ITvAPICEntry* entry() { return tvsys2_standin::RegisteredEntry(); }

    std::uint16_t port_ = 0;
    tvshell::MainLoop loop_;
    std::thread main_thread_;
};

}  // namespace server_test
