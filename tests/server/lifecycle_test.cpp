// The API Server's lifecycle through the entry object. Every test runs in a
// process of its own: the server runs once per library lifetime.
#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "UI_App/GuiApp.h"
#include "server/server_fixture.h"

namespace server_test {
namespace {

namespace asio = boost::asio;

// The host's main thread, for the calls the server hands over (a probe
// connection is one: an empty name).
struct MainThread {
    tvshell::MainLoop loop;
    std::thread thread{[this] { loop.Run(); }};
    ~MainThread() {
        loop.Quit();
        thread.join();
    }
};

TEST(Lifecycle, StopWithoutAServerReturns) {
    tvapic::ITvAPICEntry* entry = LoadedEntry();
    ASSERT_NE(entry, nullptr);
    EXPECT_NO_THROW(entry->Stop());  // never started
    ui_app_standin::SetUseStartPort(false);
    entry->Start(0);  // port 0 with a "no" starts nothing
    EXPECT_NO_THROW(entry->Stop());
}

// A server started on a free port; each test stops it itself.
class StartedServer : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(entry_, nullptr);
        port_ = StartOnFreePort(entry_);
        ASSERT_NE(port_, 0);
    }
    MainThread main_thread_;
    tvapic::ITvAPICEntry* entry_ = LoadedEntry();
    std::uint16_t port_ = 0;
};

TEST_F(StartedServer, StopEndsTheServerAndFreesThePort) {
    entry_->Stop();
    EXPECT_FALSE(Listening(port_));
    asio::io_context io;
    EXPECT_NO_THROW(asio::ip::tcp::acceptor(io, asio::ip::tcp::endpoint(asio::ip::address_v4::any(), port_)));
}

// The one-shot lifecycle: a "yes" answer restarts on the stored port, but the
// new thread ends at its first accept without serving it. Then a hundred
// such starts, each with fifty connections made while it runs: no stop
// raises, and each returns within a second.
TEST_F(StartedServer, AStartAfterAStopAnswersOneConnectionWithNothingAndEnds) {
    entry_->Stop();
    ui_app_standin::SetUseStartPort(true);  // "yes": the given 0 is ignored
    entry_->Start(0);
    // Its first accept ends the thread, whatever the connection asks. The
    // thread binds on its own time: retry until it accepts.
    std::string response = "not served";
    for (int i = 0; i < 200 && response == "not served"; ++i) {
        try {
            response = Call(port_, Name("IApplication_Quit"));
        } catch (const boost::system::system_error&) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    EXPECT_EQ(response, "");
    for (int i = 0; i < 200 && Listening(port_); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(Listening(port_));
    for (int cycle = 0; cycle <= 100 && !HasFailure(); ++cycle) {
        auto start = std::chrono::steady_clock::now();
        EXPECT_NO_THROW(entry_->Stop());
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << "cycle " << cycle;
        if (cycle == 100) break;
        entry_->Start(0);
        asio::io_context io;
        std::vector<asio::ip::tcp::socket> held;
        for (int i = 0; i < 50; ++i) {
            boost::system::error_code refused;  // once the restart has ended
            held.emplace_back(io).connect(asio::ip::tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port_), refused);
        }
    }
}

// A port someone else holds: the server says so and does not run; the
// application lives on, and the stop leaves the holder alone.
TEST(Lifecycle, APortAlreadyInUseIsReportedAndTheStopReturns) {
    tvapic::ITvAPICEntry* entry = LoadedEntry();
    ASSERT_NE(entry, nullptr);
    asio::io_context io;
    asio::ip::tcp::acceptor holder(io, asio::ip::tcp::endpoint(asio::ip::address_v4::any(), 0));
    std::uint16_t port = holder.local_endpoint().port();
    StderrCapture errors;
    ui_app_standin::SetUseStartPort(false);
    entry->Start(port);
    for (int i = 0; i < 200 && errors.Text().empty(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    // One line, in the system's words ("bind: Address already in use" on Linux).
    std::string report = errors.Text();
    EXPECT_EQ(report.rfind("API Server: bind: ", 0), 0u) << report;
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 1) << report;
    EXPECT_NO_THROW(entry->Stop());
    holder.non_blocking(true);
    asio::ip::tcp::socket nobody(io);
    boost::system::error_code none;
    holder.accept(nobody, none);
    EXPECT_EQ(none, asio::error::would_block) << "the stop connected to the port's holder";
}

TEST(LifecycleDeathTest, ASecondStartWithoutStopEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            tvapic::ITvAPICEntry* entry = LoadedEntry();
            ui_app_standin::SetUseStartPort(false);
            entry->Start(FreePort());
            entry->Start(FreePort());
        },
        "");
}

}  // namespace
}  // namespace server_test
