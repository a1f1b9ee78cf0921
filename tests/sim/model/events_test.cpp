// Events raised by the simulated model, received by plain C callbacks
// subscribed through the library's registration exports: what the Python
// client, the .NET binding and the examples subscribe to end to end.
#include <string>
#include <vector>

#include "sim_fixture.h"

namespace sim_test {
namespace {

// What the callbacks saw, in order, and how the "Begin" callbacks answer.
// Callbacks are plain function pointers, so this state is global.
struct Journal {
    std::vector<std::string> events;
    std::vector<Handle> lent;  // what the callbacks were lent, each with a reference of its own
    int answer = 1;
} journal;

void Keep(void* lent) {
    IAPIObject_AddRef(lent);
    journal.lent.emplace_back(lent);
}
int Note(const std::string& event, void* lent = nullptr) {
    journal.events.push_back(event);
    if (lent) Keep(lent);
    return journal.answer;
}
int BeginCreate(int type) { return Note("BeginCreate " + std::to_string(type)); }
void CreateDocument(void* document) { Note("CreateDocument", document); }

// A drawing-object callback: the event with the number of objects it was lent.
template <const char* Name>
int Objects(const ObjectReferenceVector_t* objects) {
    for (uint64_t i = 0; i < objects->size; ++i) Keep(objects->data[i]);
    return Note(Name + std::string(" ") + std::to_string(objects->size));
}
constexpr char kCreate[] = "Create", kChanged[] = "Changed", kBeginDelete[] = "BeginDelete", kDelete[] = "Delete",
               kDestroy[] = "Destroy", kMove[] = "Move";

class EventsTest : public SimTest {
protected:
    void TearDown() override {
        journal = Journal();  // the lent handles go before the application does
        SimTest::TearDown();
    }
};

TEST_F(EventsTest, CreatingAndOpeningDocumentsAreAnnouncedInOrderAndCanBeRefused) {
    Handle events(IApplication_Events());
    IApplicationEvents_AddBeginCreateHandler(events.get(), TVAPIC_TEXT("a"), BeginCreate);
    IApplicationEvents_AddCreateDocumentHandler(events.get(), TVAPIC_TEXT("a"), CreateDocument);
    IApplicationEvents_AddBeginOpenDocumentHandler(events.get(), nullptr, +[](const tvWChar* path) -> int {
        return Note("BeginOpen " + std::filesystem::path(path).filename().string());
    });
    IApplicationEvents_AddOpenDocumentHandler(events.get(), nullptr, +[](void* d) { Note("Open", d); });
    Handle drawing = NewDrawing();
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.lent.at(0).get(), drawing.get()));
    ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), PathTo("opened.tvd").c_str()));
    ASSERT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    Handle opened(IDocuments_Open(documents(), PathTo("opened.tvd").c_str(), 1, 0));
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.lent.at(1).get(), opened.get()));
    ASSERT_TRUE(ITavraDocument_Close(opened.get(), 0));

    journal.answer = 0;
    EXPECT_FALSE(Handle(IDocuments_Add(documents(), 1, 1)));
    EXPECT_FALSE(Handle(IDocuments_Open(documents(), PathTo("opened.tvd").c_str(), 1, 0)));
    EXPECT_EQ(journal.events, (std::vector<std::string>{"BeginCreate 1", "CreateDocument", "BeginOpen opened.tvd",
                                                        "Open", "BeginCreate 1", "BeginOpen opened.tvd"}));
    EXPECT_FALSE(Handle(IDocuments_GetItem(documents(), 0)));
}

TEST_F(EventsTest, EachKeysObjectEventsHearWhatTheirFiltersLetThrough) {
    Handle drawing = NewDrawing();
    Sheet sheet = SheetOf(drawing.get());
    Handle events(ITavraDocument2D_GetObject2DEvents(drawing.get(), TVAPIC_TEXT("one")));
    Handle other(ITavraDocument2D_GetObject2DEvents(drawing.get(), TVAPIC_TEXT("two")));
    EXPECT_FALSE(IAPIObject_IsSameObjects(events.get(), other.get()));
    IDrawingObjectEvents_AddCreateObjectHandler(events.get(), Objects<kCreate>);
    IDrawingObjectEvents_AddPropertyChangedHandler(events.get(), Objects<kChanged>);
    Handle watched = AddSegment(sheet.segments.get(), 0, 0, 1, 1);  // Create 1, then Changed 1 for each end
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.lent.at(0).get(), watched.get()));
    Handle ignored(ILineSegments_Add(sheet.segments.get()));

    List only{watched.get()};
    IDrawingObjectEvents_AddObjects(events.get(), only.get());
    ILineSegment_SetX1(ignored.get(), 5);
    ILineSegment_SetX1(watched.get(), 5);
    IDrawingObjectEvents_RemoveAllObjects(events.get());  // without a filter every object is heard
    ILineSegment_SetX1(ignored.get(), 7);
    EXPECT_EQ(journal.events, (std::vector<std::string>{"Create 1", "Changed 1", "Changed 1", "Changed 1",
                                                        "Changed 1", "Create 1", "Changed 1", "Changed 1"}));
    EXPECT_TRUE(IAPIObject_IsSameObjects(journal.lent.at(6).get(), watched.get()));
}

TEST_F(EventsTest, DeletionCanBeRefusedAndListOperationsAnnounceAllTheirObjectsAtOnce) {
    Handle drawing = NewDrawing();
    Sheet sheet = SheetOf(drawing.get());
    Handle a = AddSegment(sheet.segments.get(), 0, 0, 1, 1);
    Handle b = AddSegment(sheet.segments.get(), 0, 0, 2, 2);
    Handle events(ITavraDocument2D_GetObject2DEvents(drawing.get(), TVAPIC_TEXT("k")));
    IDrawingObjectEvents_AddBeginDeleteHandler(events.get(), Objects<kBeginDelete>);
    IDrawingObjectEvents_AddDeleteHandler(events.get(), Objects<kDelete>);
    IDrawingObjectEvents_AddMoveHandler(events.get(), Objects<kMove>);
    IDrawingObjectEvents_AddPropertyChangedHandler(events.get(), Objects<kChanged>);
    IDrawingObjectEvents_AddDestroyObjectHandler(events.get(), Objects<kDestroy>);
    List both{a.get(), b.get()};
    ASSERT_TRUE(ITavraDocument2D_MoveObjects(drawing.get(), both.get(), 1, 1));  // not a change of each
    journal.answer = 0;
    EXPECT_FALSE(IDrawingObject_Delete(a.get()));
    EXPECT_TRUE(IDrawingObject_IsValid(a.get()));
    journal.answer = 1;
    EXPECT_TRUE(IDrawingObject_Delete(a.get()));
    List just_b{b.get()};
    ASSERT_TRUE(ITavraDocument2D_DestroyObjects(drawing.get(), just_b.get()));
    EXPECT_EQ(journal.events, (std::vector<std::string>{"Move 2", "BeginDelete 1", "BeginDelete 1", "Delete 1",
                                                        "Destroy 1"}));
}

}  // namespace
}  // namespace sim_test
