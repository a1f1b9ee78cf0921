// Documents on disk: what Save and SaveAs write, Open reads back (the round
// trip the demonstrations and the Python client make), and saves refused
// rather than lossy.
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Persistence = SimTest;

// A non-BMP character, an unpaired surrogate, a control character, quotes and escapes.
const tvWChar kAuthor[] = {0x1F0, 0xD834, 0xDD1E, 0xD800, 0x01, '"', '\\', '\n', 0};

TEST_F(Persistence, SaveAsCloseAndOpenReadTheSameDrawingBack) {
    Text path = PathTo("plate.tvd");
    double created = 0;
    {
        Handle drawing = NewDrawing();
        ITavraDocument_SetAuthor(drawing.get(), kAuthor);
        created = ITavraDocument_GetCreationDate(drawing.get());
        Sheet s = SheetOf(drawing.get());
        Handle a = AddSegment(s.segments.get(), 0.1, 1e-300, -2.5e7, 1.0 / 3);
        Handle detail(IViews_Add(s.views.get(), 1));
        IView_SetScale(detail.get(), 2.5);
        IView_SetCurrent(detail.get(), 1);
        Handle width(ITavraDocument2D_AddVariable(drawing.get(), TVAPIC_TEXT("width"), 12, nullptr));
        Handle area(ITavraDocument2D_AddVariable(drawing.get(), TVAPIC_TEXT("area"), 0, TVAPIC_TEXT("width * 2")));

        EXPECT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));
        EXPECT_FALSE(ITavraDocument_IsChanged(drawing.get()));
        EXPECT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    }
    Handle opened(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(opened);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(opened.get())), kAuthor);
    EXPECT_EQ(ITavraDocument_GetCreationDate(opened.get()), created);
    EXPECT_FALSE(ITavraDocument_IsChanged(opened.get()));

    Sheet s = SheetOf(opened.get());
    EXPECT_EQ(IView_GetScale(s.view.get()), 2.5);  // the active view is kept
    Handle sheet(IViews_GetViewByNumber(s.views.get(), 1));
    Handle sheet_segments(IDrawingContainer_GetLineSegments(sheet.get()));
    Handle a(ILineSegments_GetLineSegment(sheet_segments.get(), 0));
    ASSERT_TRUE(a);
    EXPECT_EQ(ILineSegment_GetX1(a.get()), 0.1);  // every number exactly
    EXPECT_EQ(ILineSegment_GetY1(a.get()), 1e-300);
    EXPECT_EQ(ILineSegment_GetX2(a.get()), -2.5e7);
    EXPECT_EQ(ILineSegment_GetY2(a.get()), 1.0 / 3);
    Handle area(ITavraDocument2D_GetVariableByName(opened.get(), 0, TVAPIC_TEXT("area")));
    EXPECT_EQ(IVariable_GetValue(area.get()), 24);
    EXPECT_EQ(Take(IVariable_GetExpression(area.get())), TVAPIC_TEXT("width * 2"));
}

TEST_F(Persistence, SavingRefusesWhatWouldLoseWorkAndDeleteTakesTheFile) {
    Handle drawing = NewDrawing();
    ITavraDocument_SetAuthor(drawing.get(), TVAPIC_TEXT("A"));
    EXPECT_FALSE(ITavraDocument_Save(drawing.get()));  // no file yet
    EXPECT_FALSE(ITavraDocument_Close(drawing.get(), 1));
    EXPECT_TRUE(ITavraDocument_IsActive(drawing.get()));  // still open

    Text first = PathTo("first.tvd");
    ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), first.c_str()));
    Handle second = NewDrawing();
    EXPECT_FALSE(ITavraDocument_SaveAs(second.get(), first.c_str()));  // another document's file

    // A read-only document keeps its file as it is.
    ASSERT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    std::string before = ReadFile("first.tvd");
    Handle read_only(IDocuments_Open(documents(), first.c_str(), 1, 1));
    ITavraDocument_SetAuthor(read_only.get(), TVAPIC_TEXT("B"));
    EXPECT_FALSE(ITavraDocument_Save(read_only.get()));
    EXPECT_EQ(ReadFile("first.tvd"), before);
    EXPECT_TRUE(ITavraDocument_Delete(read_only.get()));  // the file, then the document
    EXPECT_FALSE(Exists("first.tvd"));
}

// What a new saved property relies on (host/sim/README.md): a file without
// a record reads, that property keeping a new document's value; a record
// with a field more than its reader takes fails the file, and so does a
// key no reader knows.
TEST_F(Persistence, AMissingRecordKeepsItsDefaultAndAnUnexpectedFieldOrKeyFailsTheFile) {
    WriteFile("lean.tvd", "tvsim-document 1\ntype 1\nauthor \"Ada\"\nend\n");
    Handle lean(IDocuments_Open(documents(), PathTo("lean.tvd").c_str(), 1, 0));
    ASSERT_TRUE(lean);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(lean.get())), TVAPIC_TEXT("Ada"));
    EXPECT_EQ(Take(ITavraDocument_GetOrganization(lean.get())), TVAPIC_TEXT(""));
    Sheet s = SheetOf(lean.get());  // a drawing without views gets a new drawing's sheet
    EXPECT_TRUE(s.view);

    WriteFile("longer.tvd", "tvsim-document 1\ntype 1\nauthor \"Ada\" \"Lovelace\"\nend\n");
    EXPECT_FALSE(Handle(IDocuments_Open(documents(), PathTo("longer.tvd").c_str(), 1, 0)));
    WriteFile("unknown.tvd", "tvsim-document 1\ntype 1\ntitle \"Plate\"\nend\n");
    EXPECT_FALSE(Handle(IDocuments_Open(documents(), PathTo("unknown.tvd").c_str(), 1, 0)));
}

}  // namespace
}  // namespace sim_test
