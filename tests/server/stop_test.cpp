// A stop, whatever the clients are doing, returns within a second and
// raises nothing: the host stops the server from its main thread, which
// holds the user's unsaved work.
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "UI_App/GuiApp.h"
#include "probe/probe.h"
#include "server/server_fixture.h"

namespace server_test {
namespace {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Client threads calling one after the other until told to end; a call the
// stop cut short, or refused, is no fault of theirs.
class CallStream {
public:
    CallStream(std::uint16_t port, int clients) {
        for (int i = 0; i < clients; ++i) {
            threads_.emplace_back([this, port] {
                while (!end_) {
                    try {
                        if (Call(port, Name("IApplication_GetBuildNumber")).size() == 4) ++answered_;
                    } catch (const boost::system::system_error&) {
                        std::this_thread::sleep_for(5ms);
                    }
                }
            });
        }
    }
    ~CallStream() {
        end_ = true;
        for (auto& t : threads_) t.join();
    }
    int answered() const { return answered_; }

private:
    std::atomic<bool> end_{false};
    std::atomic<int> answered_{0};
    std::vector<std::thread> threads_;
};

// Fifty connections in every state a connection can be in: silent, half a
// request sent, a request complete and waiting for the main thread.
std::vector<std::unique_ptr<asio::ip::tcp::socket>> FiftyConnections(asio::io_context& io, std::uint16_t port) {
    std::vector<std::unique_ptr<asio::ip::tcp::socket>> held;
    for (int i = 0; i < 50; ++i) {
        try {
            auto more = Connect(io, port, 1);
            std::string whole = Name("IApplication_SetCurrentDirectory") + Text("folder");
            std::string request = i % 3 == 0 ? "" : i % 3 == 1 ? whole.substr(0, whole.size() / 2) : whole;
            boost::system::error_code ignored;
            asio::write(*more.front(), asio::buffer(request), ignored);
            held.push_back(std::move(more.front()));
        } catch (const boost::system::system_error&) {
            // a server that has already ended refuses: nothing to hold
        }
    }
    return held;
}

class Stop : public ServerTest {
protected:
    void SetUp() override {
        tvprobe::InstallAsRoot(app_.o, "IApplication");
        ServerTest::SetUp();
    }
    void TearDown() override {
        ServerTest::TearDown();
        tvprobe::InstallAsRoot(nullptr, "IApplication");
    }
    tvprobe::Held app_{"IApplication"};
};

// How long a stop took; a stop that raises fails the test.
Clock::duration TimedStop(tvapic::ITvAPICEntry* entry) {
    auto start = Clock::now();
    EXPECT_NO_THROW(entry->Stop());
    return Clock::now() - start;
}

TEST_F(Stop, WithFiftyConnectionsHeldAndAStreamOfCallsReturnsWithinASecond) {
    asio::io_context io;
    auto held = FiftyConnections(io, port_);
    CallStream stream(port_, 3);
    for (auto end = Clock::now() + 5s; stream.answered() < 20 && Clock::now() < end;) std::this_thread::sleep_for(5ms);
    EXPECT_GE(stream.answered(), 20);
    EXPECT_LT(TimedStop(entry()), 1s);
    EXPECT_FALSE(Listening(port_));
    // TearDown stops once more: a stop after a stop does nothing.
}

// The server runs once per library lifetime: a start after a stop listens,
// ends at its first connection without serving it, and each stop after it
// returns within a second, whatever is queued.
TEST_F(Stop, AHundredStartsAfterAStopNeitherRaiseNorHang) {
    EXPECT_LT(TimedStop(entry()), 1s);
    ui_app_standin::SetUseStartPort(true);  // "yes": the stored port
    for (int cycle = 0; cycle < 100; ++cycle) {
        entry()->Start(0);
        asio::io_context io;
        auto held = FiftyConnections(io, port_);
        auto took = TimedStop(entry());
        EXPECT_LT(took, 1s) << "cycle " << cycle;
        if (took >= 1s || HasFailure()) break;
    }
}

}  // namespace
}  // namespace server_test
