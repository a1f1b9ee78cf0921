// Which thread does what: the main thread (the application's user interface)
// only runs the exports, posted to it as message 1627; it never waits on a
// client, and a stop it makes while a call waits for it returns at once.
// Here the test's own thread plays the main thread and takes the messages.
#include <algorithm>
#include <atomic>
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
    // message loop does.
    void Pump(Clock::duration length) {
        for (auto end = Clock::now() + length; Clock::now() < end;) {
            tveventsbus_standin::Message m;
            if (!tveventsbus_standin::WaitMessage(m, std::chrono::milliseconds(20))) continue;
            messages_.push_back(m);
            if (m.message == 1627) entry()->Run(m.value);
        }
    }

    // Pumps until `done` or 20 s after `start`; the time since `start`.
    template <class Done>
    Clock::duration PumpUntil(Done done, Clock::time_point start) {
        while (!done() && Clock::now() - start < std::chrono::seconds(20)) Pump(std::chrono::milliseconds(100));
        return Clock::now() - start;
    }
    Clock::duration PumpUntilAnswered(std::future<std::string>& answer, Clock::time_point start) {
        return PumpUntil([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, start);
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

TEST_F(MainThreadRules, ADrippingClientIsDroppedAtTheRequestDeadline) {
    StderrCapture errors;
    std::atomic<bool> dropped{false};
    auto start = Clock::now();
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
    auto next = CallInBackground(Name("IApplication_GetBuildNumber"));
    EXPECT_LT(PumpUntilAnswered(next, Clock::now()), std::chrono::seconds(1));
    EXPECT_EQ(next.get(), I32(42));
    // The dripping one goes at its deadline, 10 s after its accept.
    std::string timed_out = boost::system::system_error(asio::error::timed_out, "read").what();
    auto waited = PumpUntil([&] { return errors.Text().find("API Server: " + timed_out + "\n") != std::string::npos; }, start);
    dropped = true;
    dripper.join();
    EXPECT_GE(waited, std::chrono::seconds(9));
    EXPECT_LT(waited, std::chrono::seconds(12)) << errors.Text();
}

TEST_F(MainThreadRules, TheConnectionBeyondTheLimitIsClosedAtOnce) {
    // 64 complete calls wait for the main thread, which runs none of them yet.
    asio::io_context io;
    auto waiting = Connect(io, port_, 64);
    for (auto& client : waiting) {
        asio::write(*client, asio::buffer(Name("IApplication_GetBuildNumber")));
        client->shutdown(asio::ip::tcp::socket::shutdown_send);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300));  // the server reads them
    // One more is closed unanswered, without waiting for its request.
    auto start = Clock::now();
    EXPECT_EQ(CallWithin(port_, "", std::chrono::seconds(1), false), "");
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(500));
    // The 64 are all answered once the main thread gets to them.
    PumpUntil([&] { return app_->calls.size() == 64; }, Clock::now());
    Pump(std::chrono::milliseconds(200));
    EXPECT_EQ(app_->calls.size(), 64u);
    for (auto& client : waiting) {
        std::string response(8, '\0');
        boost::system::error_code end;
        response.resize(asio::read(*client, asio::buffer(response), end));
        EXPECT_EQ(response, I32(42));
    }
}

// A call made while the main thread is busy (here in a modal dialog that
// runs a message loop of its own for 1.5 s) waits for it: it is neither run
// inside the dialog nor dropped.
TEST_F(MainThreadRules, ACallMadeWhileTheMainThreadIsBusyRunsWhenItGetsToIt) {
    std::future<std::string> second;
    app_->watch = [&](const std::string& what, const char*) {
        if (what != "ShowMessageDialog" || second.valid()) return;
        second = CallInBackground(Name("IApplication_GetBuildNumber"));
        Pump(std::chrono::milliseconds(1500));
    };
    std::string dialog = Name("IApplication_ShowMessageDialog") + Text("message") + Text("caption") + Text("") +
                         I32(0) + I32(0) + I32(0) + Text("") + Text("") + Text("") + I32(0) + Text("");
    auto start = Clock::now();
    auto first = CallInBackground(dialog);
    PumpUntilAnswered(first, start);
    ASSERT_TRUE(second.valid()) << "the dialog did not open";
    PumpUntilAnswered(second, start);
    app_->watch = nullptr;
    EXPECT_EQ(first.get(), I32(42));
    EXPECT_EQ(second.get(), I32(42));
    ASSERT_EQ(app_->calls.size(), 2u);
    EXPECT_EQ(app_->calls[0].operation, "ShowMessageDialog");
    EXPECT_EQ(app_->calls[1].operation, "GetBuildNumber");
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
