// What a hostile or broken client cannot do to the application: reach the
// host with a forged handle, or make the server allocate without bound
// (going silent is in threads_test.cpp).
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "server/server_fixture.h"
#include "server/wire_signatures.h"
#include "probe/probe.h"

namespace server_test {
namespace {

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

}  // namespace
}  // namespace server_test
