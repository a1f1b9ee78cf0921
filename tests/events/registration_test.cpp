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

}  // namespace
