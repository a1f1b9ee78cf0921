// The call frame's rules seen through real exports and probe objects: the
// references held across a host call, handle identity, host exceptions,
// object arguments and the two rooted interfaces.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "common/c_heap.h"
#include "probe/probe.h"
#include "tvAPIC.h"

namespace {

using Probe = tvprobe::Held;
using Lines = std::vector<std::string>;

// What the watched probes saw, in order, as "<name> <what> [<IID text>]".
// Declared before the probes, so that it outlives them.
struct Journal {
    Lines lines;
    void Watch(Probe& p, const std::string& name) {
        p->watch = [this, name](const std::string& what, const char* iid) {
            lines.push_back(name + " " + what + (iid ? " " + std::string(iid) : ""));
        };
    }
};

// Installs a probe as the application (or transfer service) for one test.
struct RootedProbe : Probe {
    std::string root;
    explicit RootedProbe(const char* r) : Probe({r}), root(r) { tvprobe::InstallAsRoot(o, root); }
    ~RootedProbe() { tvprobe::InstallAsRoot(nullptr, root); }
};

TEST(CallOrder, TheTargetAndAnObjectArgumentAreHeldAcrossTheHostCall) {
    Journal journal;
    Probe documents("IDocuments");
    Probe parameters("IOpenDocumentParam");
    journal.Watch(documents, "documents");
    journal.Watch(parameters, "parameters");
    IDocuments_OpenDocument(documents.handle(), TVAPIC_TEXT("a.tvd"), parameters.handle());
    EXPECT_EQ(journal.lines, (Lines{"documents Query c794983c-491c-422f-9f38-754af0db7c6b", "documents AddRef",
                                    "parameters Query 7f1c8ded-8517-43fc-85d1-f9b6f9d811f0", "parameters AddRef",
                                    "documents OpenDocument", "parameters Release", "documents Release"}));
}

TEST(HandleIdentity, BothAreHeldAskedSecondThenFirstAndReleasedInReverse) {
    Journal journal;
    Probe a("IDocuments");
    Probe b("IDocuments");
    journal.Watch(a, "a");
    journal.Watch(b, "b");
    EXPECT_FALSE(IAPIObject_IsSameObjects(a.handle(), b.handle()));
    EXPECT_EQ(journal.lines, (Lines{"a AddRef", "b AddRef", "b Query 11473080-d3ff-4d2c-82fa-f746284274b4",
                                    "a Query 11473080-d3ff-4d2c-82fa-f746284274b4", "b Release", "a Release"}));
    EXPECT_TRUE(IAPIObject_IsSameObjects(a.handle(), a->Face("IDocuments")));
}

TEST(HandleIdentity, NullsAndOneHandleGivenTwiceAreTheSameWithoutQuerying) {
    EXPECT_TRUE(IAPIObject_IsSameObjects(nullptr, nullptr));
    Probe a("IDocuments");
    EXPECT_FALSE(IAPIObject_IsSameObjects(a.handle(), nullptr));
    EXPECT_FALSE(IAPIObject_IsSameObjects(nullptr, a.handle()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(a.handle(), a.handle()));
    EXPECT_EQ(a->queries, 0);
    EXPECT_EQ(a->refs(), 1);
}

TEST(HostExceptions, PassThroughAnExportWithTheReferenceGivenBack) {
    Probe document("ITavraDocument");
    document->watch = [](const std::string& what, const char*) {
        if (what == "GetName") throw std::runtime_error("host failure");
    };
    try {
        c_heap::Free(ITavraDocument_GetName(document.handle()));
        ADD_FAILURE() << "the host's exception did not reach the caller";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "host failure");
    }
    EXPECT_EQ(document->refs(), 1);
}

TEST(HostExceptionsDeathTest, AReleaseThatThrowsEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Probe document("ITavraDocument");
            document->watch = [called = false](const std::string& what, const char*) mutable {
                called = called || what == "GetName";
                if (called && what == "Release") throw std::runtime_error("release failed");
            };
            tvWChar* name = ITavraDocument_GetName(document.handle());
            document->watch = nullptr;
            c_heap::Free(name);
        },
        "");
}

TEST(ObjectArguments, NullOrLackingTheInterfaceReachTheHostAsNull) {
    Probe curve("ICurve2D");
    Probe line("ILineSegment");  // no ICurve2D face
    DoubleVector_Delete(ICurve2D_Intersect(curve.handle(), line.handle()));
    DoubleVector_Delete(ICurve2D_Intersect(curve.handle(), nullptr));
    ASSERT_EQ(curve->calls.size(), 2u);
    EXPECT_EQ(curve->calls[0].args[0], "null");
    EXPECT_EQ(curve->calls[1].args[0], "null");
    EXPECT_EQ(line->refs(), 1);
    EXPECT_EQ(ICurve2D_Intersect(line.handle(), curve.handle()), nullptr);  // not asked when the target fails
    EXPECT_EQ(curve->queries, 2);
}

TEST(RootedInterfaces, TheApplicationIsCalledWithoutQueryOrReference) {
    RootedProbe app("IApplication");
    IApplication_SetVisible(2);
    ASSERT_EQ(app->calls.size(), 1u);
    EXPECT_EQ(app->calls[0].args[0], "true");
    EXPECT_EQ(app->queries + app->addrefs, 0);
}

TEST(RootedInterfaces, TheTransferServiceHoldsItsObjectUnqueriedAndRefusesNull) {
    RootedProbe service("ITransferService");
    Probe object("ITavraDocument");
    StringVector_t* names = StringVector_Create(0);
    EXPECT_FALSE(ITransferService_GetNameFromApi(nullptr, names));
    EXPECT_TRUE(service->calls.empty());
    EXPECT_TRUE(ITransferService_GetNameFromApi(object.handle(), names));
    ASSERT_EQ(service->calls.size(), 1u);
    EXPECT_EQ(service->calls[0].args[0], object.name());
    EXPECT_EQ(object->queries, 0);
    EXPECT_EQ(object->addrefs, 1);
    EXPECT_EQ(object->refs(), 1);
    StringVector_Delete(names);
}

}  // namespace
