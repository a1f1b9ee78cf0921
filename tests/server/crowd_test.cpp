// What a crowd of clients cannot do to the application: keep a good client
// waiting, make one request take memory without bound, or flood the
// standard error stream. The fixture's main loop runs the calls.
#include <regex>
#include <string>
#include <vector>

#include "server/server_fixture.h"
#include "probe/probe.h"

namespace server_test {
namespace {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

class Crowd : public ServerTest {
protected:
    void SetUp() override {
        ServerTest::SetUp();
        tvprobe::InstallAsRoot(app_.o, "IApplication");
    }
    void TearDown() override {
        ServerTest::TearDown();
        tvprobe::InstallAsRoot(nullptr, "IApplication");
    }
    tvprobe::Held app_{"IApplication"};
};

TEST_F(Crowd, SilentConnectionsOpenedFirstDoNotDelayAGoodClient) {
    asio::io_context io;
    for (int silent : {8, 500}) {
        auto held = Connect(io, port_, silent);
        auto start = Clock::now();
        EXPECT_EQ(CallWithin(port_, Name("IApplication_GetBuildNumber"), 3s), I32(42)) << silent << " silent";
        EXPECT_LT(Clock::now() - start, 1s) << silent << " silent";
    }
}

// IApplication_ShowMessageDialog takes seven texts. Here the first holds
// 8 MiB and each of the others declares 60 MiB: 368 MiB in all, of which the
// server reads the first text and refuses at the second count, before it
// allocates anything for it.
TEST_F(Crowd, ARequestOverTheSizeLimitIsRefusedAndTheNextCallAnswered) {
    constexpr std::uint64_t kFirst = 8ull << 20, kOthers = 60ull << 20;
    StderrCapture errors;
    std::size_t peak_before = PeakMemoryKiB();
    {
        asio::io_context io;
        asio::ip::tcp::socket client(io);
        client.connect(asio::ip::tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port_));
        const std::string piece(1 << 20, 'x');
        auto send = [&](const std::string& bytes) {
            boost::system::error_code error;
            asio::write(client, asio::buffer(bytes), error);
            return !error;
        };
        auto send_text = [&](std::uint64_t size) {
            if (!send(U64(size))) return false;
            for (std::uint64_t sent = 0; sent < size; sent += piece.size()) {
                if (!send(piece)) return false;
            }
            return true;
        };
        // The three numbers between the texts are left out: the server stops long before them.
        bool sent_all = send(Name("IApplication_ShowMessageDialog")) && send_text(kFirst);
        for (int text = 1; sent_all && text < 7; ++text) sent_all = send_text(kOthers);
        EXPECT_FALSE(sent_all) << "the server read the whole request";
    }
    EXPECT_EQ(Call(Name("IApplication_GetBuildNumber")), I32(42));
    EXPECT_EQ(app_->calls.size(), 1u);
    std::size_t growth_kib = PeakMemoryKiB() - peak_before;
    EXPECT_LT(growth_kib, (kFirst + 6 * kOthers) / 8 / 1024) << "peak memory grew by " << growth_kib << " KiB";
    std::string report = errors.Text();
    EXPECT_NE(report.find("API Server: texts of 71303168 bytes in all are over the limit of 67108864 bytes\n"),
              std::string::npos)
        << report;
}

// How many errors the lines with `what` stand for: one for a plain line, N
// for one that ends in "(N times)". `lines` counts them.
int ErrorsReported(const std::string& report, const std::regex& what, int& lines) {
    static const std::regex kTimes(R"( \((\d+) times\)$)");
    int errors = 0;
    lines = 0;
    std::size_t at = 0;
    for (std::size_t end; (end = report.find('\n', at)) != std::string::npos; at = end + 1) {
        std::string line = report.substr(at, end - at);
        if (!std::regex_search(line, what)) continue;
        ++lines;
        std::smatch times;
        errors += std::regex_search(line, times, kTimes) ? std::stoi(times[1]) : 1;
    }
    return errors;
}

TEST_F(Crowd, AFloodOfFailingRequestsWritesALinePerSecondForEachKindWithACount) {
    constexpr int kFlood = 300;
    StderrCapture errors;
    // The same error again and again: a name over its limit.
    auto start = Clock::now();
    for (int i = 0; i < kFlood; ++i) Call(U64(5000));
    double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    // The repeats are counted in a line a second after the first.
    std::this_thread::sleep_for(1500ms);
    int lines = 0;
    std::regex same("^API Server: function name of 5000 bytes is over the limit of 4096 bytes");
    EXPECT_EQ(ErrorsReported(errors.Text(), same, lines), kFlood) << errors.Text();
    EXPECT_GE(lines, 2);
    EXPECT_LE(lines, 2 + static_cast<int>(seconds)) << errors.Text();

    // Errors that differ in their text: a few dozen kinds a second have lines
    // of their own, the rest are counted together.
    StderrCapture more;
    start = Clock::now();
    for (int i = 0; i < kFlood; ++i) Call(U64(10000 + i));
    seconds = std::chrono::duration<double>(Clock::now() - start).count();
    std::this_thread::sleep_for(1500ms);
    std::string report = more.Text();
    int own_lines = 0, other_lines = 0;
    int own = ErrorsReported(report, std::regex("^API Server: function name of 1\\d{4} bytes"), own_lines);
    int others = 0;
    const std::regex other_kinds(R"(API Server: (\d+) errors? of (other|another) kinds?\n)");
    for (auto it = std::sregex_iterator(report.begin(), report.end(), other_kinds); it != std::sregex_iterator();
         ++it, ++other_lines) {
        others += std::stoi((*it)[1]);
    }
    EXPECT_EQ(own + others, kFlood) << report;
    EXPECT_LE(own_lines + other_lines, 40 * (1 + static_cast<int>(seconds))) << report;
    EXPECT_GE(other_lines, 1) << report;
}

}  // namespace
}  // namespace server_test
