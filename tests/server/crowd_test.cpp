// What a crowd of clients cannot do to the application: keep a good client
// waiting, make one request take memory without bound, or flood the
// standard error stream. The fixture's main loop runs the calls.
#include <regex>
#include <sstream>
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
        boost::system::error_code refused;
        asio::write(client, asio::buffer(Name("IApplication_ShowMessageDialog")), refused);
        // The numbers between the texts are left out: the server stops long before them.
        for (int text = 0; text < 7 && !refused; ++text) {
            std::uint64_t size = text == 0 ? kFirst : kOthers;
            asio::write(client, asio::buffer(U64(size)), refused);
            for (std::uint64_t sent = 0; sent < size && !refused; sent += piece.size()) {
                asio::write(client, asio::buffer(piece), refused);
            }
        }
        EXPECT_TRUE(refused) << "the server read the whole request";
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

// Lines of a report, and the errors they stand for: one for a plain line, N
// for one that ends in "(N times)" or counts "N errors of other kinds".
std::pair<int, int> LinesAndErrors(const std::string& report) {
    static const std::regex kCount(R"((?:\((\d+) times\)|: (\d+) errors? of \w+ kinds?)$)");
    int lines = 0, errors = 0;
    std::istringstream in(report);
    for (std::string line; std::getline(in, line); ++lines) {
        std::smatch n;
        errors += std::regex_search(line, n, kCount) ? std::stoi(n[1].matched ? n[1] : n[2]) : 1;
    }
    return {lines, errors};
}

// The same error again and again (a name over its limit), then 300 errors
// that all differ: 32 kinds a second get lines of their own, the rest are
// counted together. The counts come a second after the first line.
TEST_F(Crowd, AFloodOfFailingRequestsWritesALinePerSecondForEachKindWithACount) {
    for (bool differ : {false, true}) {
        StderrCapture errors;
        auto start = Clock::now();
        for (int i = 0; i < 300; ++i) Call(U64(differ ? 10000 + i : 5000));
        int seconds = 1 + static_cast<int>(std::chrono::duration<double>(Clock::now() - start).count());
        std::this_thread::sleep_for(1500ms);
        auto [lines, reported] = LinesAndErrors(errors.Text());
        EXPECT_EQ(reported, 300) << errors.Text();
        EXPECT_GE(lines, 2);
        EXPECT_LE(lines, (differ ? 34 : 2) * seconds) << errors.Text();
    }
}

}  // namespace
}  // namespace server_test
