// Registration and removal through the library's exports, against probe
// objects that keep what they are given.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "events/registration_sweep.h"
#include "tvAPIC.h"
#include "tvapi/application.h"
#include "tvapi/drawing.h"
#include "tvapi/events.h"

namespace {

using Probe = tvprobe::Held;
using Lines = std::vector<std::string>;

Lines Kept(Probe& p) { return eventsweep::Kept(*tvprobe::SinkOf<tvapi::IApplicationEvents>(*p.o)); }

Lines fired;
void FiredA(void*) { fired.push_back("a"); }
void FiredB(void*) { fired.push_back("b"); }

TEST(KeyedRemoval, RemovesItsKeysHandlersOnlyAndANullKeyIsTheEmptyKey) {
    Probe events("IApplicationEvents");
    IApplicationEvents_AddOpenDocumentHandler(events.handle(), nullptr, FiredA);
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT(""), FiredA);
    IApplicationEvents_AddCreateDocumentHandler(events.handle(), TVAPIC_TEXT("other"), FiredB);
    EXPECT_EQ(Kept(events), (Lines{"OpenDocument:", "CreateDocument:", "CreateDocument:other"}));
    IApplicationEvents_RemoveAllHandlers(events.handle(), nullptr);
    EXPECT_EQ(events->calls.at(0).args, Lines{"\"\""});
    EXPECT_EQ(Kept(events), Lines{"CreateDocument:other"});

    fired.clear();
    tvapi::SmartPtr<tvapi::ITavraDocument> document;
    tvprobe::SinkOf<tvapi::IApplicationEvents>(*events.o)
        ->Raise<tvapi::IApplicationEvents::CreateDocumentHandler>("CreateDocument", document);
    EXPECT_EQ(fired, Lines{"b"});
}

TEST(UnkeyedRemoval, DropsEveryHandler) {
    Probe events("IDrawingObjectEvents");
    auto callback = +[](const ObjectReferenceVector_t*) { return 1; };
    IDrawingObjectEvents_AddCreateObjectHandler(events.handle(), callback);
    IDrawingObjectEvents_AddDeleteHandler(events.handle(), callback);
    IDrawingObjectEvents_RemoveAllHandlers(events.handle());
    EXPECT_TRUE(tvprobe::SinkOf<tvapi::IDrawingObjectEvents>(*events.o)->registrations().empty());
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
        tvapi::SmartPtr<tvapi::IDrawingObject>(line->As<tvapi::IDrawingObject>()),
        tvapi::SmartPtr<tvapi::IDrawingObject>(other->As<tvapi::IDrawingObject>())};
    auto results = tvprobe::SinkOf<tvapi::IDrawingObjectEvents>(*events.o)
                       ->Raise<tvapi::IDrawingObjectEvents::CreateObjectHandler>("CreateObject", created);
    EXPECT_EQ(results, std::vector<bool>{true});
    created.clear();
    EXPECT_EQ(kept_element, line.handle());
    EXPECT_EQ(line->refs(), 2);
    EXPECT_EQ(other->refs(), 1);
    IAPIObject_Release(kept_element);
}

}  // namespace
