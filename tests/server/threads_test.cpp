// Which thread does what: the main thread (the application's user interface)
// only runs the exports, posted to it as message 1627; it never waits on a
// client, and a stop it makes while a call waits for it returns at once.
// Here the test's own thread plays the main thread and takes the messages.
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "server/server_fixture.h"
#include "probe/probe.h"
#include "tvEventsBus/EventsBus.h"

namespace server_test {
namespace {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;

class MainThreadRules : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(LoadedEntry(), nullptr);
        tvprobe::InstallAsRoot(app_.o, "IApplication");
        port_ = StartOnFreePort(entry());
        ASSERT_NE(port_, 0);
    }
    void TearDown() override {
        if (!stopped_) entry()->Stop();
        tvprobe::InstallAsRoot(nullptr, "IApplication");
    }
    static tvapic::ITvAPICEntry* entry() { return tvsys2_standin::RegisteredEntry(); }

    // Handles the bus's messages on this thread for `length`, as the host's
    // message loop does; returns the longest time one message took.
    Clock::duration Pump(Clock::duration length) {
        Clock::duration longest{};
        for (auto end = Clock::now() + length; Clock::now() < end;) {
            tveventsbus_standin::Message m;
            if (!tveventsbus_standin::WaitMessage(m, std::chrono::milliseconds(20))) continue;
            auto start = Clock::now();
            messages_.push_back(m);
            if (m.message == 1627) entry()->Run(m.value);
            longest = std::max(longest, Clock::now() - start);
        }
        return longest;
    }

    // Pumps until `answer` is ready or 20 s after `start` have passed; the time since `start`.
    Clock::duration PumpUntilAnswered(std::future<std::string>& answer, Clock::time_point start) {
        while (answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready &&
               Clock::now() - start < std::chrono::seconds(20)) {
            Pump(std::chrono::milliseconds(100));
        }
        return Clock::now() - start;
    }

    std::future<std::string> CallInBackground(const std::string& request) {
        return std::async(std::launch::async, [this, request] { return server_test::Call(port_, request); });
    }

    tvprobe::Held app_{"IApplication"};
    std::uint16_t port_ = 0;
    bool stopped_ = false;
    std::vector<tveventsbus_standin::Message> messages_;
};

TEST_F(MainThreadRules, EveryCallRunsOnTheMainThreadPostedAsMessage1627) {
    auto answer = CallInBackground(Name("IApplication_GetBuildNumber"));
    Pump(std::chrono::milliseconds(300));
    EXPECT_EQ(answer.get(), I32(42));
    ASSERT_EQ(app_->calls.size(), 1u);
    EXPECT_EQ(app_->calls[0].thread, std::this_thread::get_id());
    ASSERT_EQ(messages_.size(), 1u);
    EXPECT_EQ(messages_[0].message, 1627u);
    EXPECT_EQ(messages_[0].parameter, 0u);
    EXPECT_EQ(messages_[0].target, nullptr);
    EXPECT_NE(messages_[0].value, 0);  // the posted call's address, which Run took
}

TEST_F(MainThreadRules, AClientSilentMidRequestNeverHoldsTheMainThreadAndIsDroppedAtTheDeadline) {
    asio::io_context io;
    asio::ip::tcp::socket silent(io);
    silent.connect(asio::ip::tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port_));
    asio::write(silent, asio::buffer(Name("IApplication_SetCurrentDirectory") + U64(10) + "half"));
    // Another client's call waits for the silent one to be dropped; the main
    // thread meanwhile takes every message at once.
    auto start = Clock::now();
    auto next = CallInBackground(Name("IApplication_GetBuildNumber"));
    Clock::duration longest = Pump(std::chrono::seconds(2));
    EXPECT_LT(longest, std::chrono::milliseconds(500));
    EXPECT_TRUE(app_->calls.empty());
    auto waited = PumpUntilAnswered(next, start);
    EXPECT_GE(waited, std::chrono::seconds(9));
    EXPECT_LT(waited, std::chrono::seconds(20));
    EXPECT_EQ(next.get(), I32(42));
}

TEST_F(MainThreadRules, ADrippingClientIsDroppedAtTheRequestDeadline) {
    StderrCapture errors;
    std::atomic<bool> dropped{false};
    // One byte every two seconds: each read makes progress, the request never ends.
    std::thread dripper([&] {
        asio::io_context io;
        asio::ip::tcp::socket s(io);
        s.connect(asio::ip::tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port_));
        std::string request = Name("IApplication_SetCurrentDirectory") + U64(100) + std::string(100, 'x');
        for (char byte : request) {
            boost::system::error_code error;
            asio::write(s, asio::buffer(&byte, 1), error);
            if (error) break;
            for (int i = 0; i < 20 && !dropped; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(100));
            if (dropped) break;
        }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    auto start = Clock::now();
    auto next = CallInBackground(Name("IApplication_GetBuildNumber"));
    auto waited = PumpUntilAnswered(next, start);
    dropped = true;
    dripper.join();
    ASSERT_EQ(next.wait_for(std::chrono::seconds(0)), std::future_status::ready) << "still held after 20 s";
    EXPECT_EQ(next.get(), I32(42));
    EXPECT_LT(waited, std::chrono::seconds(12));
    std::string timed_out = boost::system::system_error(asio::error::timed_out, "read").what();
    EXPECT_NE(errors.Text().find("API Server: " + timed_out + "\n"), std::string::npos) << errors.Text();
}

TEST_F(MainThreadRules, AStopWhileACallWaitsForTheMainThreadDropsTheCall) {
    auto answer = CallInBackground(Name("IApplication_Quit"));
    tveventsbus_standin::Message posted{};
    for (int i = 0; i < 200 && !tveventsbus_standin::WaitMessage(posted, std::chrono::milliseconds(10));) ++i;
    ASSERT_EQ(posted.message, 1627u);
    // This thread, the main thread, stops the server before it runs the call.
    auto start = Clock::now();
    entry()->Stop();
    stopped_ = true;
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(answer.get(), "");
    // The message arrives after all: the dropped call does nothing.
    entry()->Run(posted.value);
    EXPECT_TRUE(app_->calls.empty());
}

}  // namespace
}  // namespace server_test
