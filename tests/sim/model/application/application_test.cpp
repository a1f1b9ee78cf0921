// The application: the headless message box and commands, references given
// back where they were taken, and what Quit and tvsim_stop leave to callers.
#include "sim/headless_state.h"
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Application = SimTest;

TEST_F(Application, MessagesAnswerTheDefaultButtonAndCommandsAreRecordedNotRun) {
    EXPECT_EQ(IApplication_ShowMessageBox(TVAPIC_TEXT("Save changes?"), TVAPIC_TEXT("Plate"), 3, 1, 2), 2);
    EXPECT_EQ(tvsim_standin::LastMessage(), TVAPIC_TEXT("Save changes?"));
    EXPECT_EQ(tvsim_standin::LastMessageCaption(), TVAPIC_TEXT("Plate"));
    EXPECT_TRUE(IApplication_ExecuteTavraCommand(512, 1));
    EXPECT_FALSE(IApplication_ExecuteTavraCommand(0, 1));
    EXPECT_EQ(tvsim_standin::ExecutedCommands(), std::vector<int>{512});
}

// A caller's handles keep the references they were given and no more; Quit
// and tvsim_stop close the documents under them.
TEST_F(Application, ReferencesComeBackAndQuitAndStopCloseWhatCallersStillHold) {
    int documents_refs = Refs(documents());
    Handle{IApplication_GetDocuments()};  // given back at once
    EXPECT_EQ(Refs(documents()), documents_refs);
    Handle drawing = NewDrawing();
    EXPECT_EQ(Refs(drawing.get()), 2);  // ours and the collection's
    Sheet s = SheetOf(drawing.get());
    Handle segment = AddSegment(s.segments.get(), 0, 0, 1, 0);
    EXPECT_EQ(Refs(s.view.get()), 2);  // ours and the drawing's

    IApplication_Quit();
    EXPECT_FALSE(IApplication_IsVisible());
    EXPECT_EQ(IDocuments_GetItem(documents(), 0), nullptr);
    EXPECT_EQ(Refs(drawing.get()), 1);
    EXPECT_FALSE(IDrawingObject_IsValid(segment.get()));

    Handle kept = NewDrawing();
    tvsim_stop();
    EXPECT_FALSE(ITavraDocument_IsActive(kept.get()));
    EXPECT_EQ(Refs(kept.get()), 1);
    tvsim_start();
}

}  // namespace
}  // namespace sim_test
