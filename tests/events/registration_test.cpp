// Registration, removal, filters and event results through the library's
// exports, against probe objects that keep what they are given.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "events/registration_sweep.h"
#include "probe/event_faces.h"
#include "tvAPIC.h"
#include "tvapi/application.h"
#include "tvapi/drawing.h"
#include "tvapi/events.h"

namespace {

using tvprobe::Object;

using Probe = tvprobe::Held;

std::vector<std::string> Kept(Object& o) { return eventsweep::Kept(*tvprobe::SinkOf<tvapi::IApplicationEvents>(o)); }

std::vector<std::string> fired;
void FiredA(void*) { fired.push_back("a"); }
void FiredB(void*) { fired.push_back("b"); }

TEST(KeyedRemoval, NullAndEmptyKeysNameTheSameGroup) {
    Probe events("IApplicationEvents");
    IApplicationEvents_AddOpenDocumentHandler(events.handle(), nullptr, FiredA);
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT(""), FiredA);
    IApplicationEvents_AddOpenDocumentHandler(events.handle(), TVAPIC_TEXT("other"), FiredB);
    EXPECT_EQ(Kept(*events.o), (std::vector<std::string>{"OpenDocument:", "CreateDocument:", "OpenDocument:other"}));

    IApplicationEvents_RemoveAllHandlers(events.handle(), nullptr);
    IApplicationEvents_RemoveAllHandlers(events.handle(), TVAPIC_TEXT(""));
    ASSERT_EQ(events.o->calls.size(), 2u);
    EXPECT_EQ(events.o->calls[0].args, events.o->calls[1].args);
    EXPECT_EQ(events.o->calls[0].args, std::vector<std::string>{"\"\""});
    EXPECT_EQ(Kept(*events.o), std::vector<std::string>{"OpenDocument:other"});
}

TEST(KeyedRemoval, HandlersUnderOneKeySurviveRemovalOfAnother) {
    Probe events("IApplicationEvents");
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT("a"), FiredA);
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT("b"), FiredB);
    IApplicationEvents_AddOpenDocumentHandler(events.handle(), TVAPIC_TEXT("a"), FiredA);
    IApplicationEvents_RemoveAllHandlers(events.handle(), TVAPIC_TEXT("a"));

    fired.clear();
    Probe document("ITavraDocument");
    tvapi::SmartPtr<tvapi::ITavraDocument> raised(document.o->As<tvapi::ITavraDocument>());
    auto* sink = tvprobe::SinkOf<tvapi::IApplicationEvents>(*events.o);
    sink->Raise<tvapi::IApplicationEvents::CreateDocumentHandler>("CreateDocument", raised);
    sink->Raise<tvapi::IApplicationEvents::OpenDocumentHandler>("OpenDocument", raised);
    EXPECT_EQ(fired, std::vector<std::string>{"b"});
}

TEST(KeyedRemoval, UnkeyedRemovalDropsEveryHandler) {
    Probe events("IDrawingObjectEvents");
    auto callback = +[](const ObjectReferenceVector_t*) { return 1; };
    IDrawingObjectEvents_AddCreateObjectHandler(events.handle(), callback);
    IDrawingObjectEvents_AddDeleteHandler(events.handle(), callback);
    IDrawingObjectEvents_RemoveAllHandlers(events.handle());
    EXPECT_TRUE(tvprobe::SinkOf<tvapi::IDrawingObjectEvents>(*events.o)->registrations().empty());
    ASSERT_EQ(events.o->calls.size(), 1u);
    EXPECT_EQ(events.o->calls[0].operation, "RemoveAllHandlers");
}

// A registration is kept by the host alone: registering twice makes two
// registrations, and the events object carries no reference for them.
TEST(Registration, TheSameCallbackTwiceIsTwoRegistrations) {
    Probe events("IApplicationEvents");
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT("k"), FiredA);
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT("k"), FiredA);
    EXPECT_EQ(events.o->refs(), 1);

    fired.clear();
    auto count = tvprobe::SinkOf<tvapi::IApplicationEvents>(*events.o)
                     ->Raise<tvapi::IApplicationEvents::CreateDocumentHandler>(
                         "CreateDocument", tvapi::SmartPtr<tvapi::ITavraDocument>());
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(fired, (std::vector<std::string>{"a", "a"}));
}

// Objects handed to a callback are handles like any other: a callback that
// keeps one takes its own reference, which outlives the call.
void* kept_element = nullptr;
int KeepFirst(const ObjectReferenceVector_t* objects) {
    kept_element = objects->data[0];
    IAPIObject_AddRef(kept_element);
    return IAPIObject_IsSameObjects(objects->data[0], objects->data[1]) ? 0 : 1;
}

TEST(Registration, ACallbackKeepsAnObjectByReferencingIt) {
    Probe events("IDrawingObjectEvents");
    IDrawingObjectEvents_AddCreateObjectHandler(events.handle(), KeepFirst);
    Probe line("IDrawingObject");
    Probe other("IDrawingObject");
    std::vector<tvapi::SmartPtr<tvapi::IDrawingObject>> created{
        tvapi::SmartPtr<tvapi::IDrawingObject>(line.o->As<tvapi::IDrawingObject>()),
        tvapi::SmartPtr<tvapi::IDrawingObject>(other.o->As<tvapi::IDrawingObject>())};
    auto results = tvprobe::SinkOf<tvapi::IDrawingObjectEvents>(*events.o)
                       ->Raise<tvapi::IDrawingObjectEvents::CreateObjectHandler>("CreateObject", created);
    EXPECT_EQ(results, std::vector<bool>{true});
    created.clear();
    EXPECT_EQ(kept_element, line.handle());
    EXPECT_EQ(line.o->refs(), 2);
    EXPECT_EQ(other.o->refs(), 1);
    IAPIObject_Release(kept_element);
}

TEST(LibraryActions, TheObjectIsUsedAsItIs) {
    ITavraLibraryActions_AddRunCommandHandler(nullptr, +[](uint32_t, int) {});
    tvprobe::ITavraLibraryActionsProbe actions;
    static uint32_t command = 0;
    static int mode = 0;
    ITavraLibraryActions_AddRunCommandHandler(static_cast<tvapi::ITavraLibraryActions*>(&actions),
                                              +[](uint32_t c, int m) { command = c, mode = m; });
    auto count = actions.Raise<tvapi::ITavraLibraryActions::RunCommandHandler>(
        "RunCommand", 0xfffffffeu, static_cast<tvapi::tvRunCommandModeEnum>(2));
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(command, 0xfffffffeu);
    EXPECT_EQ(mode, 2);
}

TEST(EventResults, GetSheetPointWithBothPointersNullStillAsksTheHost) {
    Probe result("IDrawingObjectEventsResult");
    result.o->answers.flag = true;
    EXPECT_TRUE(IDrawingObjectEventsResult_GetSheetPoint(result.handle(), 7, nullptr, nullptr));
    ASSERT_EQ(result.o->calls.size(), 1u);
    EXPECT_EQ(result.o->calls[0].args, (std::vector<std::string>{"true", "&0", "&0"}));

    double x = 1.5;
    result.o->answers.flag = false;
    EXPECT_FALSE(IDrawingObjectEventsResult_GetSheetPoint(result.handle(), 0, &x, nullptr));
    EXPECT_EQ(result.o->calls[1].args, (std::vector<std::string>{"false", "&1.5", "&0"}));
    EXPECT_EQ(x, result.o->answers.out_real);
}

TEST(EventResults, GetNotifyObjectHandsOverOneReference) {
    Probe result("ITavraDocument3DEventsResult");
    Probe model("IModelObject");
    result.o->answers.object = model.o;
    void* notified = ITavraDocument3DEventsResult_GetNotifyObject(result.handle());
    EXPECT_EQ(notified, model.o->Face("IModelObject"));
    EXPECT_EQ(model.o->refs(), 2);
    IAPIObject_Release(notified);
    EXPECT_EQ(ITavraDocument3DEventsResult_GetNotifyObject(nullptr), nullptr);
}

TEST(Filters, ObjectsLackingTheElementInterfaceArriveAsNull) {
    Probe events("IDrawingObjectEvents");
    Probe line("IDrawingObject");
    Probe foreign("IModelObject");
    ObjectReferenceVector_t* objects = ObjectReferenceVector_Create(3);
    ObjectReferenceVector_Set(objects, 0, line.handle());
    ObjectReferenceVector_Set(objects, 1, foreign.handle());
    ObjectReferenceVector_Set(objects, 2, nullptr);
    IDrawingObjectEvents_AddObjects(events.handle(), objects);
    IDrawingObjectEvents_AddObjectsTypes(events.handle(), nullptr);

    ASSERT_EQ(events.o->calls.size(), 2u);
    EXPECT_EQ(events.o->calls[0].args[0], "[obj" + std::to_string(line.o->id()) + ",null,null]");
    EXPECT_EQ(events.o->calls[1].args[0], "[]");
    EXPECT_EQ(objects->size, 3u);
    EXPECT_EQ(objects->data[1], foreign.handle());
    EXPECT_EQ(line.o->refs(), 1);
    ObjectReferenceVector_Delete(objects);
}

TEST(Filters, SpecificationObjectCodesReachTheHost) {
    Probe events("ISpecificationObjectEvents");
    Int32Vector_t* codes = Int32Vector_Create(2);
    Int32Vector_Set(codes, 0, 4);
    Int32Vector_Set(codes, 1, -1);
    ISpecificationObjectEvents_Add(events.handle(), codes);
    ISpecificationObjectEvents_Remove(events.handle(), codes);
    ISpecificationObjectEvents_Add(Probe("IDrawingObjectEvents").handle(), codes);
    ASSERT_EQ(events.o->calls.size(), 2u);
    EXPECT_EQ(events.o->calls[0].operation, "Add");
    EXPECT_EQ(events.o->calls[1].operation, "Remove");
    EXPECT_EQ(events.o->calls[1].args[0], "[4,-1]");
    Int32Vector_Delete(codes);
}

}  // namespace
