// The call frame's rules seen through real exports and probe objects: handle
// identity, reference counting, out-parameters, text ownership and the two
// rooted interfaces.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "common/c_heap.h"
#include "probe/probe.h"
#include "tvAPIC.h"
#include "sweep/sweep.h"

namespace {

using sweep::Text;

using Probe = tvprobe::Held;

// Installs a probe as the application (or transfer service) for one test.
struct RootedProbe : Probe {
    std::string root;
    explicit RootedProbe(const char* r) : Probe({r}), root(r) { tvprobe::InstallAsRoot(o, root); }
    ~RootedProbe() { tvprobe::InstallAsRoot(nullptr, root); }
};

TEST(HandleIdentity, NullsAndOneHandleGivenTwiceAreTheSameWithoutQuerying) {
    EXPECT_TRUE(IAPIObject_IsSameObjects(nullptr, nullptr));
    Probe a({"IDocuments"});
    EXPECT_FALSE(IAPIObject_IsSameObjects(a.handle(), nullptr));
    EXPECT_FALSE(IAPIObject_IsSameObjects(nullptr, a.handle()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(a.handle(), a.handle()));
    EXPECT_EQ(a->queries, 0);
    EXPECT_EQ(a->refs(), 1);
    EXPECT_EQ(a->addrefs, a->releases);
}

TEST(HandleIdentity, TwoFacesOfOneObjectAreTheSameAndTwoObjectsAreNot) {
    Probe a({"IDocuments", "ITavraDocument"});
    Probe b({"IDocuments"});
    void* face = a->Face("ITavraDocument");
    ASSERT_NE(face, a.handle());
    EXPECT_TRUE(IAPIObject_IsSameObjects(a.handle(), face));
    EXPECT_FALSE(IAPIObject_IsSameObjects(a.handle(), b.handle()));
    EXPECT_EQ(a->refs(), 1);
    EXPECT_EQ(b->refs(), 1);
}

TEST(References, AddRefAndReleaseReturnTheHostsCounts) {
    Probe a({});
    EXPECT_EQ(IAPIObject_AddRef(a.handle()), 2);
    EXPECT_EQ(IAPIObject_Release(a.handle()), 1);
}

TEST(References, AnObjectGetterCalledTwiceGivesTwoReferences) {
    Probe documents({"IDocuments"});
    Probe document({"ITavraDocument"});
    documents->answers.object = document.o;
    void* first = IDocuments_GetItem(documents.handle(), 0);
    void* second = IDocuments_GetItem(documents.handle(), 1);
    EXPECT_EQ(first, second);
    EXPECT_EQ(document->refs(), 3);
    IAPIObject_Release(first);
    IAPIObject_Release(second);
    EXPECT_EQ(document->refs(), 1);
    EXPECT_EQ(documents->refs(), 1);
}

TEST(ObjectArguments, AnArgumentWithoutTheInterfaceReachesTheHostAsNull) {
    Probe documents({"IDocuments"});
    Probe foreign({"ITavraDocument"});  // not an IOpenDocumentParam
    void* opened = IDocuments_OpenDocument(documents.handle(), TVAPIC_TEXT("a.tvd"), foreign.handle());
    ASSERT_EQ(documents->calls.size(), 1u);
    EXPECT_EQ(documents->calls[0].args[1], "null");
    EXPECT_EQ(opened, nullptr);
    EXPECT_EQ(foreign->refs(), 1);
}

TEST(ObjectArguments, AreNotQueriedWhenTheHandleIsNull) {
    Probe parameters({"IOpenDocumentParam"});
    EXPECT_EQ(IDocuments_OpenDocument(nullptr, TVAPIC_TEXT("a.tvd"), parameters.handle()), nullptr);
    EXPECT_EQ(parameters->queries, 0);
    EXPECT_EQ(parameters->refs(), 1);
}

TEST(OutParameters, NullPointersAreSkippedAndTheOthersStillWritten) {
    RootedProbe app("IApplication");
    int major = 3, release = 4;
    EXPECT_TRUE(IApplication_GetSystemVersion(&major, nullptr, &release, nullptr));
    ASSERT_EQ(app->calls.size(), 1u);
    // The caller's values go in; a null pointer's local starts at zero.
    EXPECT_EQ(app->calls[0].args, (std::vector<std::string>{"&3", "&0", "&4", "&0"}));
    EXPECT_EQ(major, app->answers.out_number);
    EXPECT_EQ(release, app->answers.out_number);
}

TEST(OutParameters, AreUntouchedWhenTheHandleIsForeign) {
    Probe foreign({"IDocuments"});
    double x1 = 1, y1 = 2, x2 = 3, y2 = 4;
    EXPECT_FALSE(ITavraDocument_GetDocumentGabarit(foreign.handle(), &x1, &y1, &x2, &y2));
    EXPECT_EQ(x1 + y1 + x2 + y2, 10.0);
    EXPECT_TRUE(foreign->calls.empty());
}

TEST(Text, NullArgumentIsTheEmptyTextAndEmptyResultIsAFreshBlock) {
    Probe document({"ITavraDocument"});
    ITavraDocument_SetAuthor(document.handle(), nullptr);
    ASSERT_EQ(document->calls.size(), 1u);
    EXPECT_EQ(document->calls[0].args[0], "\"\"");
    document->answers.text.clear();
    tvWChar* author = ITavraDocument_GetAuthor(document.handle());
    ASSERT_NE(author, nullptr);
    EXPECT_EQ(author[0], 0);
    c_heap::Free(author);
    EXPECT_EQ(ITavraDocument_GetAuthor(nullptr), nullptr);
}

TEST(Text, EveryCallReturnsItsOwnBlock) {
    Probe document({"ITavraDocument"});
    tvWChar* first = ITavraDocument_GetName(document.handle());
    tvWChar* second = ITavraDocument_GetName(document.handle());
    ASSERT_NE(first, second);
    c_heap::Free(first);
    EXPECT_EQ(Text(second), TVAPIC_TEXT("answer"));
    c_heap::Free(second);
}

TEST(Text, AZeroInsideTheHostStringIsCopiedWhole) {
    Probe document({"ITavraDocument"});
    document->answers.text = tvapi::WString(TVAPIC_TEXT("ab\0cd"), 5);
    tvWChar* name = ITavraDocument_GetName(document.handle());
    EXPECT_EQ(Text(name), TVAPIC_TEXT("ab"));  // the caller sees the text end at the zero
    EXPECT_EQ(name[3], TVAPIC_TEXT('c'));
    EXPECT_EQ(name[4], TVAPIC_TEXT('d'));
    EXPECT_EQ(name[5], 0);
    c_heap::Free(name);
}

TEST(Text, ArgumentsAreCopiedForTheHost) {
    Probe document({"ITavraDocument"});
    tvapi::WString path = TVAPIC_TEXT("/tmp/\u00e9t\u00e9.tvd");
    EXPECT_TRUE(ITavraDocument_SaveAs(document.handle(), path.c_str()));
    ASSERT_EQ(document->calls.size(), 1u);
    EXPECT_EQ(document->calls[0].args[0], "\"/tmp/?t?.tvd\"");
}

TEST(RootedInterfaces, TheApplicationIsCalledWithoutQueryOrReference) {
    RootedProbe app("IApplication");
    IApplication_SetVisible(2);
    EXPECT_TRUE(IApplication_IsTavraCommandEnable(5));
    ASSERT_EQ(app->calls.size(), 2u);
    EXPECT_EQ(app->calls[0].operation, "SetVisible");
    EXPECT_EQ(app->calls[0].args[0], "true");
    EXPECT_EQ(app->calls[1].args[0], "5");
    EXPECT_EQ(app->queries, 0);
    EXPECT_EQ(app->addrefs, 0);
}

TEST(RootedInterfaces, TheTransferServiceRefusesANullObjectWithoutACall) {
    RootedProbe service("ITransferService");
    StringVector_t* names = StringVector_Create(0);
    EXPECT_FALSE(ITransferService_GetNameFromApi(nullptr, names));
    EXPECT_TRUE(service->calls.empty());
    EXPECT_EQ(names->size, 0u);
    StringVector_Delete(names);
}

TEST(RootedInterfaces, TheTransferServiceHoldsItsObjectWithoutQueryingIt) {
    RootedProbe service("ITransferService");
    Probe object({"ITavraDocument"});
    StringVector_t* names = StringVector_Create(0);
    EXPECT_TRUE(ITransferService_GetNameFromApi(object.handle(), names));
    ASSERT_EQ(service->calls.size(), 1u);
    EXPECT_EQ(service->calls[0].args[0], "obj" + std::to_string(object->id()));
    EXPECT_EQ(object->queries, 0);
    EXPECT_EQ(object->addrefs, 1);
    EXPECT_EQ(object->refs(), 1);
    // The host's list came back into the caller's vector.
    EXPECT_EQ(names->size, service->answers.count);
    StringVector_Delete(names);
}

}  // namespace
