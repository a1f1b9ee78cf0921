// What a hostile or broken client, or a crowd of them, cannot do to the
// application: reach the host with a forged handle, keep a good client
// waiting, make the server allocate without bound, or flood the standard
// error stream (dripping bytes is in threads_test.cpp).
#include <cstring>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "server/server_fixture.h"
#include "server/wire_signatures.h"
#include "probe/probe.h"

namespace server_test {
namespace {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
using tvapic::server::kWireSignatures;
using tvprobe::Object;

std::vector<std::string> Kinds(const char* list) {
    std::vector<std::string> out;
    std::stringstream in(list);
    for (std::string kind; std::getline(in, kind, ',');) out.push_back(kind);
    return out;
}

// A request whose handle arguments are `handle` and whose other arguments
// are harmless: zeros, empty texts, slots with a value of 0.
std::string RequestWith(const tvapic::server::WireSignature& f, std::uint64_t handle) {
    std::string request = Name(f.name);
    for (const std::string& kind : Kinds(f.request)) {
        if (kind == "u64") request += U64(handle);
        else if (kind == "i32") request += I32(0);
        else if (kind == "f64") request += F64(0);
        else if (kind == "string") request += Text("");
        else if (kind == "i32 slot") request += std::string(1, '\0') + I32(0);
        else request += std::string(1, '\0') + F64(0);
    }
    return request;
}

class Reliability : public ServerTest {
protected:
    void SetUp() override {
        ServerTest::SetUp();
        tvprobe::InstallAsRoot(app_, "IApplication");
    }
    void TearDown() override {
        ServerTest::TearDown();
        tvprobe::InstallAsRoot(nullptr, "IApplication");
        while (app_->refs() > 1) app_->Release();
        app_->Release();
    }
    Object* app_ = Object::Create({"IApplication"});
};

TEST_F(Reliability, ForgedHandlesAnswerAsNullOnEveryHandleTakingFunction) {
    // A real object the API Server handed out, and one that lived and died.
    Object* document = Object::Create({"ITavraDocument"});
    app_->answers.object = document;
    std::string given = Call(Name("IApplication_GetActiveDocument"));
    std::uint64_t real;
    std::memcpy(&real, given.data(), 8);
    app_->answers.object = nullptr;
    Object* gone = Object::Create({"ITavraDocument"});
    std::uint64_t freed = reinterpret_cast<std::uintptr_t>(gone->Face("ITavraDocument"));
    gone->Release();

    std::mt19937_64 random(20261122);
    int checked = 0;
    for (const auto& f : kWireSignatures) {
        if (std::string(f.request).find("u64") == std::string::npos) continue;
        std::string null_answer = Call(RequestWith(f, 0));
        for (std::uint64_t forged : {random() | 1, real + 1, real - 8, freed}) {
            EXPECT_EQ(Call(RequestWith(f, forged)), null_answer) << f.name << " with 0x" << std::hex << forged;
        }
        ++checked;
    }
    EXPECT_GT(checked, 200);
    EXPECT_TRUE(document->calls.empty());
    // The host is still there: the real handle still works.
    EXPECT_EQ(Call(Name("ITavraDocument_GetDocumentType") + U64(real)), I32(42));
    while (document->refs() > 1) document->Release();
    document->Release();
}

TEST_F(Reliability, SixtyFourBitIntegersAreNotMistakenForHandles) {
    // A 64-bit integer result (the main window's handle) goes back as it is
    // and is not recorded as a handle handed out: here it is the address of
    // an object the server never gave, which a client must not reach with it.
    tvprobe::Held document("ITavraDocument");
    std::uint64_t address = reinterpret_cast<std::uintptr_t>(document.o->Face("ITavraDocument"));
    app_->answers.id = address;
    EXPECT_EQ(Call(Name("IApplication_GetMainWindowHandle")), U64(address));
    EXPECT_EQ(Call(Name("ITavraDocument_GetDocumentType") + U64(address)), I32(0));
    EXPECT_TRUE(document.o->calls.empty());
}

TEST_F(Reliability, NamesAndTextsOverTheLimitAreRefusedAndTheNextClientServed) {
    StderrCapture errors;
    EXPECT_EQ(Call(U64(4097) + std::string(4097, 'x')), "");
    EXPECT_EQ(Call(U64(1ull << 63)), "");
    EXPECT_EQ(Call(Name("IApplication_SetCurrentDirectory") + U64((64ull << 20) + 1)), "");
    EXPECT_EQ(Call(Name("IApplication_SetCurrentDirectory") + U64(~0ull)), "");
    EXPECT_TRUE(app_->calls.empty());
    EXPECT_EQ(Call(Name("IApplication_GetBuildNumber")), I32(42));
    std::string report = errors.Text();
    EXPECT_NE(report.find("API Server: function name of 4097 bytes is over the limit of 4096 bytes\n"), std::string::npos)
        << report;
    EXPECT_NE(report.find("API Server: function name of 9223372036854775808 bytes is over the limit"), std::string::npos);
    EXPECT_NE(report.find("API Server: text of 67108865 bytes is over the limit of 67108864 bytes\n"), std::string::npos);
}

TEST_F(Reliability, SilentConnectionsOpenedFirstDoNotDelayAGoodClient) {
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
TEST_F(Reliability, ARequestOverTheSizeLimitIsRefusedAndTheNextCallAnswered) {
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
TEST_F(Reliability, AFloodOfFailingRequestsWritesALinePerSecondForEachKindWithACount) {
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
