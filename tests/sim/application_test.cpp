// The application and its document collection: settings, the headless
// message box, recorded commands, the active document, and references
// given back where they were taken.
#include "sim/standin.h"
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Application = SimTest;

TEST_F(Application, SettingsAreKept) {
    EXPECT_TRUE(IApplication_IsVisible());
    IApplication_SetVisible(0);
    EXPECT_FALSE(IApplication_IsVisible());
    IApplication_SetCurrentDirectory(TVAPIC_TEXT("/work/plans"));
    EXPECT_EQ(Take(IApplication_GetCurrentDirectory()), TVAPIC_TEXT("/work/plans"));
    IApplication_SetHideMessage(2);
    EXPECT_EQ(IApplication_GetHideMessage(), 2);
    IApplication_SetEnableTaskAccess(0);
    EXPECT_FALSE(IApplication_IsEnableTaskAccess());
    IApplication_SetLockPumpMessages(1);
    EXPECT_TRUE(IApplication_IsLockPumpMessages());
    int major = 0, minor = 0, release = -1, build = 0;
    EXPECT_TRUE(IApplication_GetSystemVersion(&major, &minor, &release, &build));
    EXPECT_EQ(build, IApplication_GetBuildNumber());
    EXPECT_EQ(major, 26);

    IDocuments_SetRecoverMode(documents(), 1);
    IDocuments_SetDocumentSynchronize(documents(), 1);
    IDocuments_SetLockTemplatesSettings(documents(), 1);
    EXPECT_TRUE(IDocuments_IsRecoverMode(documents()));
    EXPECT_TRUE(IDocuments_IsDocumentSynchronize(documents()));
    EXPECT_TRUE(IDocuments_IsLockTemplatesSettings(documents()));
}

TEST_F(Application, MessagesAreAnsweredWithTheDefaultButtonAndRemembered) {
    EXPECT_EQ(IApplication_ShowMessageBox(TVAPIC_TEXT("Save changes?"), TVAPIC_TEXT("Plate"), 3, 1, 2), 2);
    EXPECT_EQ(tvsim_standin::LastMessage(), TVAPIC_TEXT("Save changes?"));
    EXPECT_EQ(tvsim_standin::LastMessageCaption(), TVAPIC_TEXT("Plate"));
    EXPECT_EQ(IApplication_ShowMessageDialog(TVAPIC_TEXT("Replace?"), TVAPIC_TEXT("Files"), TVAPIC_TEXT("details"), 3, 1, 0, TVAPIC_TEXT("Yes"),
                                             TVAPIC_TEXT("No"), nullptr, 1, TVAPIC_TEXT("Always")),
              1);
    EXPECT_EQ(tvsim_standin::LastMessage(), TVAPIC_TEXT("Replace?"));
}

TEST_F(Application, CommandsAreRecordedNotRun) {
    EXPECT_TRUE(IApplication_ExecuteTavraCommand(512, 1));
    EXPECT_FALSE(IApplication_ExecuteTavraCommand(0, 1));
    EXPECT_TRUE(IApplication_ExecuteTavraCommand(7, 0));
    EXPECT_EQ(tvsim_standin::ExecutedCommands(), (std::vector<int>{512, 7}));
    EXPECT_TRUE(IApplication_IsTavraCommandEnable(3));
    EXPECT_FALSE(IApplication_IsTavraCommandEnable(-3));
}

TEST_F(Application, TheActiveDocumentFollowsAddingChoosingAndClosing) {
    EXPECT_EQ(IDocuments_Add(documents(), 0, 1), nullptr);  // no such type
    EXPECT_EQ(IDocuments_Add(documents(), 6, 1), nullptr);
    Handle first = NewDrawing();
    Handle part(IDocuments_AddWithDefaultSettings(documents(), 3, 1));
    EXPECT_EQ(Take(ITavraDocument_GetName(part.get())), TVAPIC_TEXT("Document2"));
    EXPECT_EQ(ITavraDocument2D_GetViewsAndLayersManager(part.get()), nullptr);  // not two-dimensional
    Handle active(IApplication_GetActiveDocument());
    EXPECT_TRUE(IAPIObject_IsSameObjects(active.get(), part.get()));

    IApplication_SetActiveDocument(first.get());
    EXPECT_TRUE(ITavraDocument_IsActive(first.get()));
    EXPECT_FALSE(ITavraDocument_IsActive(part.get()));
    Handle item(IDocuments_GetItem(documents(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(item.get(), part.get()));

    EXPECT_TRUE(ITavraDocument_Close(first.get(), 0));
    Handle now(IApplication_GetActiveDocument());
    EXPECT_TRUE(IAPIObject_IsSameObjects(now.get(), part.get()));
    IApplication_SetActiveDocument(first.get());  // closed: nothing changes
    EXPECT_TRUE(ITavraDocument_IsActive(part.get()));
}

TEST_F(Application, DocumentPropertiesAndChanges) {
    Handle drawing = NewDrawing();
    void* d = drawing.get();
    double created = ITavraDocument_GetCreationDate(d);
    EXPECT_GT(created, 40000);  // days since 1899: this century
    EXPECT_FALSE(ITavraDocument_SetChanged(d, 1));
    EXPECT_TRUE(ITavraDocument_SetChanged(d, 0));
    EXPECT_FALSE(ITavraDocument_IsChanged(d));
    EXPECT_GE(ITavraDocument_GetLastChangeDate(d), created);

    EXPECT_FALSE(ITavraDocument_ActivateToolbarSet(d, nullptr));
    EXPECT_TRUE(ITavraDocument_ActivateToolbarSet(d, TVAPIC_TEXT("Drafting")));
    EXPECT_EQ(Take(ITavraDocument_GetActiveToolbarSet(d)), TVAPIC_TEXT("Drafting"));
    EXPECT_EQ(ITavraDocument_GetTextLength(d, TVAPIC_TEXT("ab\U0001D11E"), 0), 7.5);
    EXPECT_EQ(Take(ITavraDocument_GetObjectNameByType(d, 1)), TVAPIC_TEXT("Line segment"));
    EXPECT_TRUE(ITavraDocument_Draw(d));

    ITavraDocument2D_SetOrthogonalMode(d, 1);
    ITavraDocument2D_SetEnableUndo(d, 0);
    ITavraDocument2D_SetTreeNeedRebuild(d, 1);
    EXPECT_TRUE(ITavraDocument2D_IsOrthogonalMode(d));
    EXPECT_FALSE(ITavraDocument2D_IsEnableUndo(d));
    EXPECT_TRUE(ITavraDocument2D_IsTreeNeedRebuild(d));
    EXPECT_FALSE(ITavraDocument2D_IsTreeNeedUpdateItems(d));
    int checked = -1, broken = -1;
    EXPECT_TRUE(ITavraDocument2D_CheckAssociation(d, 1, &checked, &broken));
    EXPECT_EQ(checked + broken, 0);
}

TEST_F(Application, QuitAndStopCloseTheDocumentsCallersStillHold) {
    Handle drawing = NewDrawing();
    Handle other = NewDrawing();
    IApplication_Quit();
    EXPECT_FALSE(IApplication_IsVisible());
    EXPECT_EQ(IDocuments_GetItem(documents(), 0), nullptr);
    EXPECT_FALSE(ITavraDocument_Close(drawing.get(), 0));

    Handle kept = NewDrawing();
    Sheet s = SheetOf(kept.get());
    Handle segment = AddSegment(s.segments.get(), 0, 0, 1, 0);
    tvsim_stop();
    EXPECT_FALSE(IDrawingObject_IsValid(segment.get()));
    EXPECT_FALSE(ITavraDocument_IsActive(kept.get()));
    EXPECT_EQ(Refs(kept.get()), 1);
    tvsim_start();
}

TEST_F(Application, ReferencesComeBackWhereTheyWere) {
    int documents_refs = Refs(documents());
    for (int i = 0; i < 3; ++i) Handle again(IApplication_GetDocuments());
    EXPECT_EQ(Refs(documents()), documents_refs);

    Handle drawing = NewDrawing();
    EXPECT_EQ(Refs(drawing.get()), 2);  // ours and the collection's
    {
        Handle active(IApplication_GetActiveDocument());
        Handle by_index(IDocuments_GetItem(documents(), 0));
        Sheet s = SheetOf(drawing.get());
        Handle segment = AddSegment(s.segments.get(), 0, 0, 1, 0);
        List listed{segment.get(), segment.get()};
        EXPECT_TRUE(ITavraDocument2D_MoveObjects(drawing.get(), listed.get(), 1, 0));
        EXPECT_EQ(ILineSegment_GetX1(segment.get()), 1);  // listed twice, moved once
        Handle variable(ITavraDocument2D_AddVariable(drawing.get(), TVAPIC_TEXT("v"), 1, nullptr));
        auto variables = TakeAll(ITavraDocument2D_GetVariables(drawing.get(), 0));
        EXPECT_EQ(Refs(variable.get()), 3);  // ours, the vector's and the drawing's
        EXPECT_EQ(Refs(segment.get()), 2);
        EXPECT_EQ(Refs(s.manager.get()), 2);
    }
    EXPECT_EQ(Refs(drawing.get()), 2);
    EXPECT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    EXPECT_EQ(Refs(drawing.get()), 1);
}

}  // namespace
}  // namespace sim_test
