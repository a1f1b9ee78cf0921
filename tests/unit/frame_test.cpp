// The call frame's templates over an interface of the tests' own: the
// out-object and the refilled object list, which no catalogued operation
// uses yet, and the IID text every query is given.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "common/c_heap.h"
#include "frame/frame.h"
#include "probe/probe.h"
#include "tvAPIC.h"
#include "tvapi/application.h"
#include "unit/shape.h"

namespace {

using tvapic::frame::Arg;
using tvapic::frame::Target;
using Shapes = std::vector<tvapi::SmartPtr<IShape>>;

// The exports the generator would write for IShape's Find and Collect.
bool IShape_Find(void* handle, void** found) {
    Target<IShape> self(handle);
    if (!self) return false;
    Arg<tvapi::SmartPtr<IShape>*, void**> a0(found);
    self->Find(a0.host());
    a0.finish();
    return true;
}

void IShape_Collect(void* handle, ObjectReferenceVector_t* shapes) {
    Target<IShape> self(handle);
    if (!self) return;
    Arg<Shapes&, ObjectReferenceVector_t*> a0(shapes);
    self->Collect(a0.host());
    a0.finish();
}

TEST(OutObject, IsTheObjectsBaseFaceBorrowedOrNull) {
    Shape target, found, faceless;
    faceless.has_object_face = false;
    char sentinel;
    void* out = &sentinel;
    EXPECT_FALSE(IShape_Find(nullptr, &out));
    EXPECT_EQ(out, &sentinel);
    EXPECT_TRUE(IShape_Find(target.face(), &out));  // the host gives none
    EXPECT_EQ(out, nullptr);

    target.answer = &found;
    EXPECT_TRUE(IShape_Find(target.face(), &out));
    EXPECT_EQ(out, found.face());
    EXPECT_EQ(found.refs, 1);  // no reference came with it
    EXPECT_EQ(target.refs, 1);
    EXPECT_TRUE(IShape_Find(target.face(), nullptr));  // skipped, the host still called
    EXPECT_EQ(found.refs, 1);

    target.answer = &faceless;  // no base face
    EXPECT_TRUE(IShape_Find(target.face(), &out));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(faceless.refs, 1);
}

TEST(RefilledObjectList, CarriesOneReferenceForTheCallerPerObject) {
    Shape target, a, b;
    target.answers = {&a, nullptr, &b, &a};
    ObjectReferenceVector_t* shapes = ObjectReferenceVector_Create(0);
    ObjectReferenceVector_Clear(shapes);  // object lists are refilled over an empty header
    IShape_Collect(target.face(), shapes);
    ASSERT_EQ(shapes->size, 4u);
    EXPECT_EQ(shapes->data[0], a.face());
    EXPECT_EQ(shapes->data[1], nullptr);
    EXPECT_EQ(shapes->data[2], b.face());
    EXPECT_EQ(shapes->data[3], a.face());
    EXPECT_EQ(a.refs, 3);
    EXPECT_EQ(b.refs, 2);
    EXPECT_EQ(target.refs, 1);
    for (std::uint64_t i = 0; i < shapes->size; ++i) {
        if (shapes->data[i]) IAPIObject_Release(shapes->data[i]);
    }
    ObjectReferenceVector_Delete(shapes);
    EXPECT_EQ(a.refs, 1);
    EXPECT_EQ(b.refs, 1);

    IShape_Collect(target.face(), nullptr);  // a null list drops the host's
    EXPECT_EQ(a.refs, 1);
}

TEST(Query, EachQueryIsGivenACopyOfTheIidTextOfItsOwn) {
    tvprobe::Held document("ITavraDocument");
    const char* const text = tvapi::IAPIObjectIID<tvapi::ITavraDocument>::text;
    std::vector<std::string> seen;
    document->watch = [&](const std::string& what, const char* iid) {
        if (what != "Query") return;
        seen.push_back(iid);
        EXPECT_NE(iid, text) << "the host was handed the interface's own text";
        if (iid != text) std::memset(const_cast<char*>(iid), 'x', 36);  // the host may write on what it is given
    };
    for (int i = 0; i < 2; ++i) c_heap::Free(ITavraDocument_GetName(document.handle()));
    EXPECT_EQ(seen, std::vector<std::string>(2, "10383170-7577-4552-997a-8a2524677c16"));
    EXPECT_EQ(document->calls.size(), 2u);
    document->watch = nullptr;
}

}  // namespace
