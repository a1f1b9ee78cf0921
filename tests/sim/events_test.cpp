// Events raised by the simulated model, received by plain C callbacks
// subscribed through the library's registration exports.
#include <string>
#include <vector>

#include "sim/events.h"
#include "tvapi/ui.h"
#include "sim_fixture.h"

namespace sim_test {
namespace {

// What the callbacks saw, in order, and how the veto callbacks answer.
// Callbacks are plain function pointers, so this state is global.
struct Journal {
    std::vector<std::string> events;
    std::vector<Handle> documents;  // documents the callbacks were lent, with a reference of their own
    std::vector<std::vector<Handle>> objects;
    std::vector<Text> texts;
    int answer = 1;
    void* drawing = nullptr;  // for callbacks that ask the drawing about the notification
    int notify_type = -1;
};
Journal journal;

// Keeps a lent handle beyond the callback: with a reference of its own.
void Lent(void* document) {
    if (document) IAPIObject_AddRef(document);
    journal.documents.emplace_back(document);
}

int BeginCreate(int type) {
    journal.events.push_back("BeginCreate " + std::to_string(type));
    return journal.answer;
}
void CreateDocument(void* document) {
    journal.events.push_back("CreateDocument");
    Lent(document);
}
void ChangeActiveDocument(void* document) {
    journal.events.push_back(document ? "ChangeActiveDocument" : "ChangeActiveDocument none");
    Lent(document);
}
int BeginOpenDocument(const tvWChar* path) {
    journal.events.push_back("BeginOpenDocument");
    journal.texts.emplace_back(path);
    return journal.answer;
}
void OpenDocument(void* document) {
    journal.events.push_back("OpenDocument");
    Lent(document);
}

// A drawing-object callback: records the event and the objects it was lent.
template <const char* Name>
int ObjectsEvent(const ObjectReferenceVector_t* objects) {
    journal.events.push_back(Name);
    journal.objects.emplace_back();
    for (uint64_t i = 0; i < objects->size; ++i) {
        IAPIObject_AddRef(objects->data[i]);
        journal.objects.back().emplace_back(objects->data[i]);
    }
    if (journal.drawing) {
        Handle result(ITavraDocument2D_GetDrawingObjectEventsResult(journal.drawing));
        journal.notify_type = result ? IDrawingObjectEventsResult_GetNotifyType(result.get()) : -1;
    }
    return journal.answer;
}
constexpr char kCreateObject[] = "CreateObject", kPropertyChanged[] = "PropertyChanged", kBeginDelete[] = "BeginDelete",
               kDelete[] = "Delete", kDestroyObject[] = "DestroyObject", kMove[] = "Move";

class EventsTest : public SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        journal = Journal();
        app_events_ = Handle(IApplication_Events());
        ASSERT_TRUE(app_events_);
    }
    void TearDown() override {
        journal = Journal();  // the lent handles go before the application does
        app_events_ = Handle();
        SimTest::TearDown();
    }

    void* app_events() const { return app_events_.get(); }

    // A drawing with two segments and the events object of one subscriber.
    struct TwoSegments {
        Handle drawing;
        Sheet sheet;
        Handle a, b, events;
    };
    TwoSegments MakeTwoSegments() {
        TwoSegments s;
        s.drawing = NewDrawing();
        s.sheet = SheetOf(s.drawing.get());
        s.a = AddSegment(s.sheet.segments.get(), 0, 0, 1, 1);
        s.b = AddSegment(s.sheet.segments.get(), 0, 0, 2, 2);
        s.events = ObjectEventsOf(s.drawing.get());
        return s;
    }

    // The drawing's events object of `key`.
    static Handle ObjectEventsOf(void* drawing, const Text& key = TVAPIC_TEXT("tests")) {
        return Handle(ITavraDocument2D_GetObject2DEvents(drawing, key.c_str()));
    }

    Handle app_events_;
};

TEST_F(EventsTest, CreatingADocumentFiresTheApplicationsEventsInOrder) {
    IApplicationEvents_AddBeginCreateHandler(app_events(), TVAPIC_TEXT("a"), BeginCreate);
    IApplicationEvents_AddCreateDocumentHandler(app_events(), TVAPIC_TEXT("a"), CreateDocument);
    IApplicationEvents_AddChangeActiveDocumentHandler(app_events(), TVAPIC_TEXT("a"), ChangeActiveDocument);

    Handle drawing = NewDrawing();
    ASSERT_TRUE(drawing);
    EXPECT_EQ(journal.events, (std::vector<std::string>{"BeginCreate 1", "CreateDocument", "ChangeActiveDocument"}));
    ASSERT_EQ(journal.documents.size(), 2u);
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.documents[0].get(), drawing.get()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.documents[1].get(), drawing.get()));
}

TEST_F(EventsTest, ASubscriberRefusingTheCreationLeavesNoDocument) {
    IApplicationEvents_AddBeginCreateHandler(app_events(), TVAPIC_TEXT("a"), BeginCreate);
    IApplicationEvents_AddCreateDocumentHandler(app_events(), TVAPIC_TEXT("a"), CreateDocument);
    journal.answer = 0;

    EXPECT_FALSE(Handle(IDocuments_Add(documents(), 1, 1)));
    EXPECT_EQ(journal.events, std::vector<std::string>{"BeginCreate 1"});
    EXPECT_FALSE(Handle(IDocuments_GetItem(documents(), 0)));
}

TEST_F(EventsTest, OpeningAFileFiresBeginOpenWithItsPathThenOpen) {
    Text path = PathTo("opened.tvd");
    {
        Handle drawing = NewDrawing();
        ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));
        ASSERT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    }
    IApplicationEvents_AddBeginOpenDocumentHandler(app_events(), nullptr, BeginOpenDocument);
    IApplicationEvents_AddOpenDocumentHandler(app_events(), nullptr, OpenDocument);

    Handle opened(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(opened);
    EXPECT_EQ(journal.events, (std::vector<std::string>{"BeginOpenDocument", "OpenDocument"}));
    EXPECT_EQ(journal.texts, std::vector<Text>{path});
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.documents.at(0).get(), opened.get()));

    journal = Journal();
    journal.answer = 0;
    ASSERT_TRUE(ITavraDocument_Close(opened.get(), 0));
    EXPECT_FALSE(Handle(IDocuments_Open(documents(), path.c_str(), 1, 0)));  // refused
    EXPECT_EQ(journal.events, std::vector<std::string>{"BeginOpenDocument"});
}

TEST_F(EventsTest, RemovingOneKeysHandlersKeepsTheOthers) {
    IApplicationEvents_AddCreateDocumentHandler(app_events(), TVAPIC_TEXT("kept"), CreateDocument);
    IApplicationEvents_AddBeginCreateHandler(app_events(), TVAPIC_TEXT("removed"), BeginCreate);
    IApplicationEvents_AddCreateDocumentHandler(app_events(), nullptr, CreateDocument);  // the empty key
    IApplicationEvents_RemoveAllHandlers(app_events(), TVAPIC_TEXT("removed"));
    IApplicationEvents_RemoveAllHandlers(app_events(), TVAPIC_TEXT(""));  // the null key's too

    Handle drawing = NewDrawing();
    EXPECT_EQ(journal.events, std::vector<std::string>{"CreateDocument"});
}

TEST_F(EventsTest, SwitchingDocumentsTellsBothDocumentsAndTheApplication) {
    Handle first = NewDrawing();
    Handle second = NewDrawing();
    Handle first_events(ITavraDocument_Events(first.get()));
    Handle second_events(ITavraDocument_Events(second.get()));
    ITavraDocumentEvents_AddActivateDocumentHandler(first_events.get(), TVAPIC_TEXT("k"), +[]() -> int {
        journal.events.push_back("first activated");
        return 1;
    });
    ITavraDocumentEvents_AddDeactivateDocumentHandler(second_events.get(), TVAPIC_TEXT("k"),
                                                      +[]() { journal.events.push_back("second deactivated"); });
    IApplicationEvents_AddChangeActiveDocumentHandler(app_events(), TVAPIC_TEXT("k"), ChangeActiveDocument);

    ITavraDocument_SetActive(first.get());
    ITavraDocument_SetActive(first.get());  // already active: no event
    EXPECT_EQ(journal.events,
              (std::vector<std::string>{"second deactivated", "first activated", "ChangeActiveDocument"}));
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.documents.at(0).get(), first.get()));

    // Closing the last document leaves none active.
    journal.events.clear();
    ASSERT_TRUE(ITavraDocument_Close(second.get(), 0));
    ASSERT_TRUE(ITavraDocument_Close(first.get(), 0));
    EXPECT_EQ(journal.events.back(), "ChangeActiveDocument none");
}

TEST_F(EventsTest, SavingAndClosingFireTheDocumentsEventsAndHonourAVeto) {
    Handle drawing = NewDrawing();
    Handle events(ITavraDocument_Events(drawing.get()));
    ITavraDocumentEvents_AddBeginSaveDocumentHandler(events.get(), TVAPIC_TEXT("k"), +[](const tvWChar* path) -> int {
        journal.events.push_back("BeginSave");
        journal.texts.emplace_back(path);
        return journal.answer;
    });
    ITavraDocumentEvents_AddSaveDocumentHandler(events.get(), TVAPIC_TEXT("k"),
                                                +[]() { journal.events.push_back("Save"); });
    ITavraDocumentEvents_AddBeginCloseDocumentHandler(events.get(), TVAPIC_TEXT("k"), +[]() -> int {
        journal.events.push_back("BeginClose");
        return journal.answer;
    });
    ITavraDocumentEvents_AddCloseDocumentHandler(events.get(), TVAPIC_TEXT("k"),
                                                 +[]() { journal.events.push_back("Close"); });

    Text path = PathTo("saved.tvd");
    ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));  // no BeginSave: save-as has its own
    ASSERT_TRUE(ITavraDocument_Save(drawing.get()));
    EXPECT_EQ(journal.texts, std::vector<Text>{path});

    journal.answer = 0;
    EXPECT_FALSE(ITavraDocument_Save(drawing.get()));
    EXPECT_FALSE(ITavraDocument_Close(drawing.get(), 0));
    EXPECT_TRUE(ITavraDocument_IsActive(drawing.get()));  // still open

    journal.answer = 1;
    EXPECT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    EXPECT_EQ(journal.events, (std::vector<std::string>{"Save", "BeginSave", "Save", "BeginSave", "BeginClose",
                                                        "BeginClose", "Close"}));
}

TEST_F(EventsTest, AddingALineSegmentFiresCreateObjectWithTheNewSegment) {
    Handle drawing = NewDrawing();
    Sheet sheet = SheetOf(drawing.get());
    Handle events = ObjectEventsOf(drawing.get());
    IDrawingObjectEvents_AddCreateObjectHandler(events.get(), ObjectsEvent<kCreateObject>);
    journal.drawing = drawing.get();

    Handle segment(ILineSegments_Add(sheet.segments.get()));
    ASSERT_TRUE(segment);
    EXPECT_EQ(journal.events, std::vector<std::string>{"CreateObject"});
    ASSERT_EQ(journal.objects.at(0).size(), 1u);
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.objects[0][0].get(), segment.get()));
    EXPECT_GT(journal.notify_type, 0);  // the events result described the notification

    // Outside a notification there is no result to read.
    EXPECT_FALSE(Handle(ITavraDocument2D_GetDrawingObjectEventsResult(drawing.get())));
}

TEST_F(EventsTest, TheSameKeyGivesTheSameEventsObjectAndAnotherKeyItsOwn) {
    Handle drawing = NewDrawing();
    Handle first = ObjectEventsOf(drawing.get(), TVAPIC_TEXT("one"));
    Handle again = ObjectEventsOf(drawing.get(), TVAPIC_TEXT("one"));
    Handle other = ObjectEventsOf(drawing.get(), TVAPIC_TEXT("two"));
    EXPECT_TRUE(IAPIObject_IsSameObjects(first.get(), again.get()));
    EXPECT_FALSE(IAPIObject_IsSameObjects(first.get(), other.get()));
}

TEST_F(EventsTest, ObjectAndTypeFiltersChooseWhatASubscriberHears) {
    TwoSegments scene = MakeTwoSegments();
    void* watched = scene.a.get();
    void* ignored = scene.b.get();
    void* events = scene.events.get();
    IDrawingObjectEvents_AddPropertyChangedHandler(events, ObjectsEvent<kPropertyChanged>);
    {
        List only{watched};
        IDrawingObjectEvents_AddObjects(events, only.get());
    }
    ILineSegment_SetX1(ignored, 5);
    ILineSegment_SetX1(watched, 5);
    ASSERT_EQ(journal.objects.size(), 1u);
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.objects[0].at(0).get(), watched));

    // A type filter naming another kind of object silences the subscriber.
    Int32Vector_t* types = Int32Vector_Create(1);
    Int32Vector_Set(types, 0, 999);
    IDrawingObjectEvents_AddObjectsTypes(events, types);
    ILineSegment_SetX1(watched, 6);
    EXPECT_EQ(journal.objects.size(), 1u);

    // Without filters every object is heard again.
    IDrawingObjectEvents_RemoveObjectsTypes(events, types);
    Int32Vector_Delete(types);
    IDrawingObjectEvents_RemoveAllObjects(events);
    ILineSegment_SetX1(ignored, 7);
    EXPECT_EQ(journal.objects.size(), 2u);

    // An unkeyed interface's removal drops every handler.
    IDrawingObjectEvents_RemoveAllHandlers(events);
    ILineSegment_SetX1(ignored, 8);
    EXPECT_EQ(journal.objects.size(), 2u);
}

TEST_F(EventsTest, DeletionCanBeRefusedAndIsAnnouncedOnceDone) {
    Handle drawing = NewDrawing();
    Sheet sheet = SheetOf(drawing.get());
    Handle segment = AddSegment(sheet.segments.get(), 0, 0, 1, 1);
    Handle events = ObjectEventsOf(drawing.get());
    IDrawingObjectEvents_AddBeginDeleteHandler(events.get(), ObjectsEvent<kBeginDelete>);
    IDrawingObjectEvents_AddDeleteHandler(events.get(), ObjectsEvent<kDelete>);

    journal.answer = 0;
    EXPECT_FALSE(IDrawingObject_Delete(segment.get()));
    EXPECT_TRUE(IDrawingObject_IsValid(segment.get()));

    journal.answer = 1;
    EXPECT_TRUE(IDrawingObject_Delete(segment.get()));
    EXPECT_FALSE(IDrawingObject_IsValid(segment.get()));
    EXPECT_EQ(journal.events, (std::vector<std::string>{"BeginDelete", "BeginDelete", "Delete"}));
}

TEST_F(EventsTest, ListOperationsAnnounceAllTheirObjectsAtOnce) {
    TwoSegments scene = MakeTwoSegments();
    void* events = scene.events.get();
    IDrawingObjectEvents_AddMoveHandler(events, ObjectsEvent<kMove>);
    IDrawingObjectEvents_AddPropertyChangedHandler(events, ObjectsEvent<kPropertyChanged>);
    IDrawingObjectEvents_AddDestroyObjectHandler(events, ObjectsEvent<kDestroyObject>);

    List both{scene.a.get(), scene.b.get()};
    ASSERT_TRUE(ITavraDocument2D_MoveObjects(scene.drawing.get(), both.get(), 1, 1));
    ASSERT_TRUE(ITavraDocument2D_DestroyObjects(scene.drawing.get(), both.get()));
    // A move is not a property change of each object.
    EXPECT_EQ(journal.events, (std::vector<std::string>{"Move", "DestroyObject"}));
    EXPECT_EQ(journal.objects.at(0).size(), 2u);
    EXPECT_EQ(journal.objects.at(1).size(), 2u);
}

TEST_F(EventsTest, QuittingCanBeRefusedAndOtherwiseEndsWithApplicationDestroy) {
    Handle drawing = NewDrawing();
    IApplicationEvents_AddBeginCloseAllDocumentHandler(app_events(), TVAPIC_TEXT("k"), +[]() -> int {
        journal.events.push_back("BeginCloseAll");
        return journal.answer;
    });
    IApplicationEvents_AddApplicationDestroyHandler(app_events(), TVAPIC_TEXT("k"),
                                                    +[]() { journal.events.push_back("Destroy"); });
    journal.answer = 0;
    IApplication_Quit();
    EXPECT_TRUE(ITavraDocument_IsActive(drawing.get()));

    journal.answer = 1;
    IApplication_Quit();
    EXPECT_FALSE(ITavraDocument_IsActive(drawing.get()));
    EXPECT_EQ(journal.events, (std::vector<std::string>{"BeginCloseAll", "BeginCloseAll", "Destroy"}));
}

// Events the simulated model has no occasion for are raised through the
// test hook; in/out arguments come back as the callbacks left them.
TEST_F(EventsTest, AnyEventCanBeRaisedThroughTheHookAndItsInOutArgumentsComeBack) {
    IApplicationEvents_AddBeginChoiceMarkingHandler(app_events(), TVAPIC_TEXT("k"),
                                                    +[](const tvWChar* marking, tvWChar** chosen) -> int {
                                                        static Text mine;
                                                        mine = Text(marking) + TVAPIC_TEXT("-chosen");
                                                        *chosen = mine.data();
                                                        return 1;
                                                    });
    IApplicationEvents_AddKeyDownHandler(app_events(), TVAPIC_TEXT("k"), +[](int* key, int, void*) -> int {
        *key += 1;
        return 0;
    });
    auto* handlers = tvsim::HandlersBehind<tvapi::IApplicationEvents>(app_events());
    ASSERT_NE(handlers, nullptr);

    tvapi::WString chosen = TVAPIC_TEXT("before");
    EXPECT_EQ(handlers->BeginChoiceMarking.Raise(TVAPIC_TEXT("M-1"), chosen), std::vector<bool>{true});
    EXPECT_EQ(chosen, tvapi::WString(TVAPIC_TEXT("M-1-chosen")));

    int key = 40;
    EXPECT_FALSE(handlers->KeyDown.RaiseAllowing(key, 0, tvapi::SmartPtr<tvapi::IPressedKeys>()));
    EXPECT_EQ(key, 41);

    // A handle of another interface has no such lists.
    Handle drawing = NewDrawing();
    EXPECT_EQ(tvsim::HandlersBehind<tvapi::IApplicationEvents>(drawing.get()), nullptr);
}

}  // namespace
}  // namespace sim_test
