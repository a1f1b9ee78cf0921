// Documents on disk: what Save and SaveAs write, Open reads back, the
// recover mode's reading of damaged files, load combinations, templates and
// metadata files.
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Persistence = SimTest;

const tvWChar kAuthor[] = TVAPIC_TEXT("Ἀριστοτέλης \U0001D11E");
const tvWChar kComment[] = TVAPIC_TEXT("two \"quoted\" lines\nand a tab\t\\ end");

TEST_F(Persistence, SaveAsCloseAndOpenReadTheSameDrawingBack) {
    Text path = PathTo("plate.tvd");
    double created = 0;
    {
        Handle drawing = NewDrawing();
        ITavraDocument_SetAuthor(drawing.get(), kAuthor);
        ITavraDocument_SetComment(drawing.get(), kComment);
        ITavraDocument_SetOrganization(drawing.get(), TVAPIC_TEXT("Works"));
        ITavraDocument_SetDocumentTypeId(drawing.get(), TVAPIC_TEXT("plate"));
        ITavraDocument2D_SetParametricMode(drawing.get(), 1);
        created = ITavraDocument_GetCreationDate(drawing.get());
        Sheet s = SheetOf(drawing.get());
        Handle a = AddSegment(s.segments.get(), 0.1, 1e-300, -2.5e7, 1.0 / 3);
        IDrawingObject_SetStyle(a.get(), 5);
        IDrawingObject_SetTransparentBackground(a.get(), 1);
        Handle layers(IView_GetLayers(s.view.get()));
        Handle hidden(ILayers_Add(layers.get(), TVAPIC_TEXT("Hidden")));
        ILayer_SetVisible(hidden.get(), 0);
        IDrawingObject_SetLayerNumber(a.get(), 1);
        List just_a{a.get()};
        ITavraDocument2D_CreateHyperLink(drawing.get(), just_a.get(), 1, TVAPIC_TEXT("doc://b"), nullptr, 0);
        Handle detail(IViews_Add(s.views.get(), 1));
        IView_SetName(detail.get(), TVAPIC_TEXT("Detail A"));
        IView_SetScale(detail.get(), 2.5);
        IView_SetCurrent(detail.get(), 1);
        Handle detail_segments(IDrawingContainer_GetLineSegments(detail.get()));
        Handle zero = AddSegment(detail_segments.get(), 4, 4, 4, 4);
        ILineSegment_SetAngle(zero.get(), 30);  // kept though it has no length
        Handle width(ITavraDocument2D_AddVariable(drawing.get(), TVAPIC_TEXT("width"), 12, nullptr));
        Handle area(ITavraDocument2D_AddVariable(drawing.get(), TVAPIC_TEXT("area"), 0, TVAPIC_TEXT("width * 2")));
        IVariable_SetNote(width.get(), TVAPIC_TEXT("mm"));
        IVariable_SetReadOnly(width.get(), 1);
        Handle gap(ITavraDocument2D_AddIntervalVariable(drawing.get(), TVAPIC_TEXT("gap"), 0.5, 0.75));

        EXPECT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));
        EXPECT_EQ(Take(ITavraDocument_GetName(drawing.get())), TVAPIC_TEXT("plate.tvd"));
        EXPECT_FALSE(ITavraDocument_IsChanged(drawing.get()));
        EXPECT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    }
    EXPECT_EQ(ReadFile("plate.tvd").rfind("tvsim-document 1\n", 0), 0u);

    Handle opened(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(opened);
    Handle by_path(IDocuments_GetItemByFilePath(documents(), path.c_str()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_path.get(), opened.get()));
    EXPECT_EQ(ITavraDocument_GetDocumentType(opened.get()), 1);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(opened.get())), kAuthor);
    EXPECT_EQ(Take(ITavraDocument_GetComment(opened.get())), kComment);
    EXPECT_EQ(Take(ITavraDocument_GetOrganization(opened.get())), TVAPIC_TEXT("Works"));
    EXPECT_EQ(Take(ITavraDocument_GetDocumentTypeId(opened.get())), TVAPIC_TEXT("plate"));
    EXPECT_EQ(ITavraDocument_GetCreationDate(opened.get()), created);
    EXPECT_EQ(ITavraDocument_GetOpenVersion(opened.get()), 1);
    EXPECT_FALSE(ITavraDocument_IsChanged(opened.get()));
    EXPECT_TRUE(ITavraDocument2D_IsParametricMode(opened.get()));

    Sheet s = SheetOf(opened.get());
    EXPECT_EQ(Take(IView_GetName(s.view.get())), TVAPIC_TEXT("Detail A"));  // the active view is kept
    EXPECT_EQ(IView_GetScale(s.view.get()), 2.5);
    Handle zero(ILineSegments_GetLineSegment(s.segments.get(), 0));
    EXPECT_EQ(ILineSegment_GetLength(zero.get()), 0);
    EXPECT_EQ(ILineSegment_GetAngle(zero.get()), 30);

    Handle sheet(IViews_GetViewByNumber(s.views.get(), 1));
    Handle sheet_segments(IDrawingContainer_GetLineSegments(sheet.get()));
    Handle a(ILineSegments_GetLineSegment(sheet_segments.get(), 0));
    ASSERT_TRUE(a);
    EXPECT_EQ(ILineSegment_GetX1(a.get()), 0.1);
    EXPECT_EQ(ILineSegment_GetY1(a.get()), 1e-300);
    EXPECT_EQ(ILineSegment_GetX2(a.get()), -2.5e7);
    EXPECT_EQ(ILineSegment_GetY2(a.get()), 1.0 / 3);
    EXPECT_EQ(IDrawingObject_GetStyle(a.get()), 5);
    EXPECT_EQ(IDrawingObject_GetLayerNumber(a.get()), 1);
    EXPECT_TRUE(IDrawingObject_IsTransparentBackground(a.get()));
    int kind = 0;
    EXPECT_EQ(Take(IDrawingObject_GetHyperLinkParam(a.get(), &kind)), TVAPIC_TEXT("doc://b"));
    Handle layers(IView_GetLayers(sheet.get()));
    Handle hidden(ILayers_GetLayerByName(layers.get(), TVAPIC_TEXT("Hidden")));
    EXPECT_FALSE(ILayer_IsVisible(hidden.get()));

    Handle area(ITavraDocument2D_GetVariableByName(opened.get(), 0, TVAPIC_TEXT("area")));
    EXPECT_EQ(IVariable_GetValue(area.get()), 24);
    EXPECT_EQ(Take(IVariable_GetExpression(area.get())), TVAPIC_TEXT("width * 2"));
    Handle width(ITavraDocument2D_GetVariableByName(opened.get(), 0, TVAPIC_TEXT("width")));
    EXPECT_EQ(Take(IVariable_GetNote(width.get())), TVAPIC_TEXT("mm"));
    EXPECT_TRUE(IVariable_IsReadOnly(width.get()));
    Handle gap(ITavraDocument2D_GetIntervalVariableByName(opened.get(), TVAPIC_TEXT("gap")));
    EXPECT_EQ(IIntervalVariable_GetSecondValue(gap.get()), 0.75);
}

// The format by hand: the records a reader may rely on.
const char kHandWritten[] =
    "tvsim-document 1\n"
    "type 2\n"
    "author \"R\\u00e9my\"\n"
    "load-combination \"Dead\"\n"
    "load-combination \"Wind\"\n"
    "active-combination 1\n"
    "view 1 0 \"Sheet\" \"\" 0 0 1 0 0 1 1 0\n"
    "segment 7 0 0 3 4 0 0 0 0 0 0 0 0 \"\"\n"
    "end\n";

TEST_F(Persistence, AHandWrittenFileOpensWithItsLoadCombinations) {
    WriteFile("fragment.tvd", kHandWritten);
    Text path = PathTo("fragment.tvd");
    int active = -1;
    StringVector_t* names = IDocuments_GetLoadCombinations(documents(), path.c_str(), &active);
    ASSERT_NE(names, nullptr);
    ASSERT_EQ(names->size, 2u);
    EXPECT_EQ(Borrowed(StringVector_Get(names, 1)), TVAPIC_TEXT("Wind"));
    EXPECT_EQ(active, 1);
    StringVector_Delete(names);

    EXPECT_EQ(IDocuments_OpenByLoadCombinationName(documents(), path.c_str(), 1, 0, TVAPIC_TEXT("Snow")), nullptr);
    EXPECT_EQ(IDocuments_OpenByLoadCombinationIndex(documents(), path.c_str(), 1, 0, 2), nullptr);
    EXPECT_EQ(IDocuments_GetItem(documents(), 0), nullptr);  // nothing stays open
    Handle fragment(IDocuments_OpenByLoadCombinationName(documents(), path.c_str(), 1, 0, TVAPIC_TEXT("Dead")));
    ASSERT_TRUE(fragment);
    EXPECT_EQ(ITavraDocument_GetDocumentType(fragment.get()), 2);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(fragment.get())), TVAPIC_TEXT("Rémy"));
    Sheet s = SheetOf(fragment.get());
    Handle segment(ILineSegments_GetLineSegment(s.segments.get(), 0));
    EXPECT_EQ(ILineSegment_GetLength(segment.get()), 5);
    EXPECT_EQ(IDrawingObject_GetId(segment.get()), 7);
    Handle next = AddSegment(s.segments.get(), 0, 0, 1, 0);
    EXPECT_EQ(IDrawingObject_GetId(next.get()), 8);

    // The chosen combination is saved with the document.
    ASSERT_TRUE(ITavraDocument_SaveAs(fragment.get(), PathTo("saved.tvd").c_str()));
    StringVector_Delete(IDocuments_GetLoadCombinations(documents(), PathTo("saved.tvd").c_str(), &active));
    EXPECT_EQ(active, 0);
}

TEST_F(Persistence, DamagedFilesOpenOnlyInRecoverMode) {
    std::string damaged = kHandWritten;
    damaged.replace(damaged.find("segment 7 0 0 3"), 15, "segment 7 0 0 x");
    damaged.insert(damaged.find("end\n"), "layer-group \"G\" 0 \"oops\"\ncolour 3\n");
    WriteFile("damaged.tvd", damaged);
    Text path = PathTo("damaged.tvd");
    EXPECT_EQ(IDocuments_Open(documents(), path.c_str(), 1, 0), nullptr);
    EXPECT_EQ(IDocuments_GetRecoverError(documents()), 3);

    IDocuments_SetRecoverMode(documents(), 1);
    Handle recovered(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(recovered);
    EXPECT_EQ(IDocuments_GetRecoverError(documents()), 3);
    Int32Vector_t* skipped = IDocuments_GetRecoverModeErrorList(documents());
    ASSERT_EQ(skipped->size, 3u);
    EXPECT_EQ(Int32Vector_Get(skipped, 0), 8);  // the segment's line
    EXPECT_EQ(Int32Vector_Get(skipped, 2), 10);  // a record no reader knows
    Int32Vector_Delete(skipped);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(recovered.get())), TVAPIC_TEXT("Rémy"));
    Sheet s = SheetOf(recovered.get());
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 0);

    IDocuments_ClearRecoverError(documents());
    EXPECT_EQ(IDocuments_GetRecoverError(documents()), 0);
    EXPECT_EQ(IDocuments_Open(documents(), PathTo("").c_str(), 1, 0), nullptr);  // a folder
    EXPECT_EQ(IDocuments_GetRecoverError(documents()), 1);
    WriteFile("letter.txt", "Dear reader,\n");
    EXPECT_EQ(IDocuments_Open(documents(), PathTo("letter.txt").c_str(), 1, 0), nullptr);
    EXPECT_EQ(IDocuments_GetRecoverError(documents()), 2);
}

TEST_F(Persistence, SavingRefusesWhatWouldLoseWork) {
    Handle drawing = NewDrawing();
    ITavraDocument_SetAuthor(drawing.get(), TVAPIC_TEXT("A"));
    EXPECT_FALSE(ITavraDocument_Save(drawing.get()));  // no file yet
    EXPECT_FALSE(ITavraDocument_Close(drawing.get(), 1));
    EXPECT_TRUE(ITavraDocument_IsActive(drawing.get()));  // still open
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), PathTo("no/such/folder/a.tvd").c_str()));
    EXPECT_TRUE(ITavraDocument_IsChanged(drawing.get()));
    EXPECT_EQ(Take(ITavraDocument_GetFullPath(drawing.get())), TVAPIC_TEXT(""));
#if !defined(_WIN32)
    // An unpaired surrogate names no file on a POSIX system (on Windows it can).
    Text unpaired = PathTo("a") + Text(1, tvWChar(0xD800)) + TVAPIC_TEXT(".tvd");
    EXPECT_FALSE(ITavraDocument_SaveAs(drawing.get(), unpaired.c_str()));
    EXPECT_FALSE(Handle(IDocuments_Open(documents(), unpaired.c_str(), 1, 0)));
#endif

    Text first = PathTo("first.tvd");
    ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), first.c_str()));
    Handle second = NewDrawing();
    EXPECT_FALSE(ITavraDocument_SaveAs(second.get(), first.c_str()));  // another document's file
    Handle same(IDocuments_Open(documents(), first.c_str(), 1, 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(same.get(), drawing.get()));

    // A read-only document keeps its file as it is.
    ASSERT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    std::string before = ReadFile("first.tvd");
    Handle read_only(IDocuments_Open(documents(), first.c_str(), 1, 1));
    EXPECT_TRUE(ITavraDocument_IsReadOnly(read_only.get()));
    ITavraDocument_SetAuthor(read_only.get(), TVAPIC_TEXT("B"));
    EXPECT_FALSE(ITavraDocument_Save(read_only.get()));
    EXPECT_EQ(ReadFile("first.tvd"), before);
    EXPECT_TRUE(ITavraDocument_SaveToVersion(read_only.get(), PathTo("copy.tvd").c_str(), 0));
    EXPECT_FALSE(ITavraDocument_SaveToVersion(read_only.get(), PathTo("old.tvd").c_str(), 3));
    EXPECT_FALSE(Exists("old.tvd"));
    EXPECT_EQ(Take(ITavraDocument_GetFullPath(read_only.get())), first);
    EXPECT_TRUE(ITavraDocument_IsChanged(read_only.get()));
    Handle copy(IDocuments_Open(documents(), PathTo("copy.tvd").c_str(), 1, 0));
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(copy.get())), TVAPIC_TEXT("B"));
}

TEST_F(Persistence, OpenParametersAndTemplates) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle segment = AddSegment(s.segments.get(), 0, 0, 2, 0);
    Text path = PathTo("base.tvd");
    ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));
    ASSERT_TRUE(ITavraDocument_Close(drawing.get(), 0));

    Handle parameters(IDocuments_GetOpenDocumentParam(documents()));
    IOpenDocumentParam_SetApplyingIndex(parameters.get(), 4);
    EXPECT_EQ(IDocuments_OpenDocument(documents(), path.c_str(), parameters.get()), nullptr);
    IOpenDocumentParam_SetApplyingIndex(parameters.get(), 0);
    IOpenDocumentParam_SetReadOnly(parameters.get(), 1);
    IOpenDocumentParam_SetVisible(parameters.get(), 0);
    Handle opened(IDocuments_OpenDocument(documents(), path.c_str(), parameters.get()));
    ASSERT_TRUE(opened);
    EXPECT_TRUE(ITavraDocument_IsReadOnly(opened.get()));
    EXPECT_FALSE(ITavraDocument_IsVisible(opened.get()));

    Handle from_template(IDocuments_AddNewDocumentFromTemplate(documents(), path.c_str(), 1));
    ASSERT_TRUE(from_template);
    EXPECT_EQ(Take(ITavraDocument_GetFullPath(from_template.get())), TVAPIC_TEXT(""));
    EXPECT_EQ(Take(ITavraDocument_GetName(from_template.get())), TVAPIC_TEXT("Document2"));
    Sheet t = SheetOf(from_template.get());
    EXPECT_EQ(IView_GetObjectCount(t.view.get()), 1);

    Handle combinations(IDocuments_GetLoadCombinationsParam(documents(), path.c_str()));
    StringVector_t* names = ILoadCombinationsParam_GetLoadCombinations(combinations.get());
    ASSERT_EQ(names->size, 1u);
    EXPECT_EQ(Borrowed(StringVector_Get(names, 0)), TVAPIC_TEXT("Base"));
    StringVector_Delete(names);
}

TEST_F(Persistence, MetadataTravelsThroughAFileOfItsOwn) {
    Handle drawing = NewDrawing();
    const tvWChar metadata[] = TVAPIC_TEXT("key=välue\n\U0001D11E");
    ITavraDocument_SetMetadata(drawing.get(), metadata);
    Text file = PathTo("meta.txt");
    ASSERT_TRUE(ITavraDocument_WriteMetadataToFile(drawing.get(), file.c_str()));
    EXPECT_EQ(ReadFile("meta.txt"), "key=v\xC3\xA4lue\n\xF0\x9D\x84\x9E");

    Handle other = NewDrawing();
    ITavraDocument_SetMetadata(other.get(), TVAPIC_TEXT("before"));
    WriteFile("bad.txt", "\xC3\x28");
    EXPECT_FALSE(ITavraDocument_ApplyMetadataFromFile(other.get(), PathTo("bad.txt").c_str()));
    EXPECT_FALSE(ITavraDocument_ApplyMetadataFromFile(other.get(), PathTo("none.txt").c_str()));
    EXPECT_EQ(Take(ITavraDocument_GetMetadata(other.get())), TVAPIC_TEXT("before"));
    ASSERT_TRUE(ITavraDocument_ApplyMetadataFromFile(other.get(), file.c_str()));
    EXPECT_EQ(Take(ITavraDocument_GetMetadata(other.get())), metadata);
}

TEST_F(Persistence, APathWithoutAFileOpensANewDocumentToBeSavedThere) {
    Text path = PathTo("new.tvd");
    Handle fresh(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(fresh);
    EXPECT_EQ(Take(ITavraDocument_GetName(fresh.get())), TVAPIC_TEXT("new.tvd"));
    EXPECT_EQ(ITavraDocument_GetDocumentType(fresh.get()), 1);
    EXPECT_EQ(ITavraDocument_GetOpenVersion(fresh.get()), 0);
    EXPECT_FALSE(Exists("new.tvd"));
    Sheet s = SheetOf(fresh.get());
    Handle segment = AddSegment(s.segments.get(), 0, 0, 1, 1);
    EXPECT_TRUE(ITavraDocument_Close(fresh.get(), 1));  // saved on the way out
    EXPECT_TRUE(Exists("new.tvd"));
}

TEST_F(Persistence, OtherDocumentTypesKeepTheirPropertiesExactly) {
    Handle part(IDocuments_Add(documents(), 3, 1));
    const tvWChar odd[] = {TVAPIC_TEXT('a'), 0xD800, TVAPIC_TEXT('\x01'), TVAPIC_TEXT('b'), 0};  // an unpaired surrogate and a control character
    ITavraDocument_SetAuthor(part.get(), odd);
    Text path = PathTo("part.tvd");
    ASSERT_TRUE(ITavraDocument_SaveAs(part.get(), path.c_str()));
    ASSERT_TRUE(ITavraDocument_Close(part.get(), 0));
    EXPECT_NE(ReadFile("part.tvd").find("author \"a\\uD800\\u0001b\"\n"), std::string::npos);

    Handle opened(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(opened);
    EXPECT_EQ(ITavraDocument_GetDocumentType(opened.get()), 3);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(opened.get())), odd);
    EXPECT_EQ(ITavraDocument2D_GetViewsAndLayersManager(opened.get()), nullptr);

    // Lines ending in CR LF read the same.
    std::string crlf;
    for (char c : std::string(kHandWritten)) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    WriteFile("crlf.tvd", crlf);
    Handle fragment(IDocuments_Open(documents(), PathTo("crlf.tvd").c_str(), 1, 0));
    ASSERT_TRUE(fragment);
    EXPECT_EQ(Take(ITavraDocument_GetAuthor(fragment.get())), TVAPIC_TEXT("Rémy"));
}

TEST_F(Persistence, DeleteTakesTheFileWithTheDocument) {
    Handle drawing = NewDrawing();
    ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), PathTo("gone.tvd").c_str()));
    ASSERT_TRUE(Exists("gone.tvd"));
    EXPECT_TRUE(ITavraDocument_Delete(drawing.get()));
    EXPECT_FALSE(Exists("gone.tvd"));
    EXPECT_EQ(IDocuments_GetItem(documents(), 0), nullptr);
    EXPECT_FALSE(ITavraDocument_Delete(drawing.get()));
}

}  // namespace
}  // namespace sim_test
