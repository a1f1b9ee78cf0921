// The application: the headless message box and commands, references given
// back where they were taken, and what Quit and tvsim_stop leave to callers.
#include "sim/headless_state.h"
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Application = SimTest;

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
