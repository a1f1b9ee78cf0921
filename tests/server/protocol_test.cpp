// The wire protocol, byte for byte, against the running API Server. Probe
// objects answer with known values and record what the host received.
#include <string>

#include "server/server_fixture.h"
#include "probe/probe.h"

namespace server_test {
namespace {

using tvprobe::Object;

struct Probe {
    Object* o;
    explicit Probe(const char* interface) : o(Object::Create({interface})) {}
    // Handles sent to a client keep their reference (there is no remote
    // release); the test gives those back here.
    ~Probe() {
        while (o->refs() > 1) o->Release();
        o->Release();
    }
    Object* operator->() const { return o; }
};

class Protocol : public ServerTest {
protected:
    void SetUp() override {
        ServerTest::SetUp();
        tvprobe::InstallAsRoot(app_.o, "IApplication");
    }
    void TearDown() override {
        ServerTest::TearDown();
        tvprobe::InstallAsRoot(nullptr, "IApplication");
    }
    // The wire form of `probe`'s handle as the API Server hands it out through
    // `getter` (an application function returning an object): only handles
    // the API Server gave out reach the functions.
    std::string Given(Probe& probe, const char* getter) {
        app_->answers.object = probe.o;
        std::string handle = Call(Name(getter));
        app_->answers.object = nullptr;
        app_->calls.clear();
        return handle;
    }
    std::string Document(Probe& p) { return Given(p, "IApplication_GetActiveDocument"); }

    Probe app_{"IApplication"};
};

TEST_F(Protocol, HandleGetterAnswersFourBytesAndANullHandleZero) {
    Probe document("ITavraDocument");
    EXPECT_EQ(Call(Name("ITavraDocument_GetDocumentType") + Document(document)), I32(42));
    EXPECT_EQ(Call(Name("ITavraDocument_GetDocumentType") + U64(0)), I32(0));
    EXPECT_EQ(document->calls.size(), 1u);
}

TEST_F(Protocol, TruthValuesTravelAsFourBytes) {
    Probe document("ITavraDocument");
    EXPECT_EQ(Call(Name("ITavraDocument_IsChanged") + Document(document)), I32(1));
    EXPECT_EQ(Call(Name("ITavraDocument_SetReadOnly") + Document(document) + I32(0x100)), "");
    ASSERT_EQ(document->calls.size(), 2u);
    EXPECT_EQ(document->calls[1].args, std::vector<std::string>{"true"});
}

TEST_F(Protocol, SlotsAreEchoedWithTheirFlagsThenTheResult) {
    std::string request = Name("IApplication_GetSystemVersion") + '\0' + I32(3) + '\1' + '\0' + I32(5) + '\7';
    std::string expected = '\0' + I32(66) + '\1' + '\0' + I32(66) + '\7' + I32(1);
    EXPECT_EQ(Call(request), expected);
    ASSERT_EQ(app_->calls.size(), 1u);
    // A slot without a value reaches the function as a pointer to 0.
    EXPECT_EQ(app_->calls[0].args, (std::vector<std::string>{"&3", "&0", "&5", "&0"}));
}

TEST_F(Protocol, StringResultsAndNullStringResults) {
    Probe document("ITavraDocument");
    EXPECT_EQ(Call(Name("ITavraDocument_GetName") + Document(document)), Text("answer"));
    EXPECT_EQ(Call(Name("ITavraDocument_GetName") + U64(0)), U64(0));
    EXPECT_EQ(Call(Name("IApplication_GetCurrentDirectory")), Text("answer"));
}

TEST_F(Protocol, StringVectorResultsAndTheNullVectorThatWritesNothing) {
    Probe documents("IDocuments");
    std::string handle = Given(documents, "IApplication_GetDocuments");
    std::string args = Text("plan.tvd") + '\0' + I32(9);
    EXPECT_EQ(Call(Name("IDocuments_GetLoadCombinations") + handle + args),
              '\0' + I32(66) + U64(3) + Text("e0") + Text("e1") + Text("e2"));
    documents->answers.count = 0;
    EXPECT_EQ(Call(Name("IDocuments_GetLoadCombinations") + handle + args),
              '\0' + I32(66) + U64(0));
    // A null handle: the function returns a null vector, and only the slot goes out.
    EXPECT_EQ(Call(Name("IDocuments_GetLoadCombinations") + U64(0) + args), '\0' + I32(9));
}

TEST_F(Protocol, TextArgumentsArriveAsWideTextAndEmptyTextIsNotNull) {
    Probe document("ITavraDocument");
    EXPECT_EQ(Call(Name("ITavraDocument_SaveAs") + Document(document) + Text("plan.tvd")), I32(1));
    EXPECT_EQ(Call(Name("ITavraDocument_SetAuthor") + Document(document) + Text("")), "");
    ASSERT_EQ(document->calls.size(), 2u);
    EXPECT_EQ(document->calls[0].args[0], "\"plan.tvd\"");
    EXPECT_EQ(document->calls[1].args[0], "\"\"");
}

TEST_F(Protocol, ObjectResultsTravelAsHandles) {
    Probe documents("IDocuments");
    app_->answers.object = documents.o;
    std::string response = Call(Name("IApplication_GetDocuments"));
    EXPECT_EQ(response, Handle(documents->Face("IDocuments")));
    // The handle keeps the reference it was returned with: there is no remote release.
    EXPECT_EQ(documents->refs(), 2);
}

TEST_F(Protocol, UnknownNamesAndFunctionsThatAreNotRemotableAnswerNothing) {
    Probe document("ITavraDocument");
    std::string args = Document(document) + I32(1);
    StderrCapture errors;
    EXPECT_EQ(Call(Name("IPart_GetMass") + args), "");
    EXPECT_EQ(Call(Name("IAdditionConvertParameters_GetAngle") + args), "");  // exported, not remotable
    EXPECT_EQ(Call(Name("itavradocument_getname") + args), "");
    EXPECT_EQ(Call(Name(std::string("ITavraDocument_GetName") + '\0') + args), "");
    EXPECT_EQ(Call(Name("") + args), "");
    EXPECT_TRUE(document->calls.empty());
    EXPECT_TRUE(app_->calls.empty());
    EXPECT_EQ(errors.Text(), "");  // not an error: nothing is reported anywhere
}

TEST_F(Protocol, AClientThatLeavesMidArgumentIsReportedOnceAndTheNextIsServed) {
    Probe document("ITavraDocument");
    StderrCapture errors;
    std::string whole = Name("ITavraDocument_SaveAs") + Document(document) + Text("plan.tvd");
    EXPECT_EQ(Call(whole.substr(0, whole.size() - 3)), "");
    EXPECT_EQ(Call(Name("ITavraDocument_IsChanged") + Document(document)), I32(1));
    std::string report = errors.Text();
    EXPECT_EQ(report.rfind("API Server: read", 0), 0u) << report;
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 1);
    ASSERT_EQ(document->calls.size(), 1u);
    EXPECT_EQ(document->calls[0].operation, "IsChanged");
}

TEST_F(Protocol, TwoClientsAreServedInTheOrderTheirRequestsComplete) {
    namespace asio = boost::asio;
    using asio::ip::tcp;
    asio::io_context io;
    tcp::endpoint server(asio::ip::make_address_v4("127.0.0.1"), port_);
    tcp::socket first(io), second(io);
    first.connect(server);
    second.connect(server);
    // The first client's request is complete only once the second has been answered.
    std::string first_request = Name("IApplication_SetCurrentDirectory") + Text("first");
    asio::write(first, asio::buffer(first_request.substr(0, 12)));
    asio::write(second, asio::buffer(Name("IApplication_SetCurrentDirectory") + Text("second")));
    char c;
    boost::system::error_code done;
    second.read_some(asio::buffer(&c, 1), done);
    asio::write(first, asio::buffer(first_request.substr(12)));
    first.read_some(asio::buffer(&c, 1), done);
    ASSERT_EQ(app_->calls.size(), 2u);
    EXPECT_EQ(app_->calls[0].args[0], "\"second\"");
    EXPECT_EQ(app_->calls[1].args[0], "\"first\"");
}

}  // namespace
}  // namespace server_test
