// A drawing's line segments as clients draw them through the active view:
// the bounding box the demonstrations read back, the operations on object
// lists, and what deleting and closing leave to callers who still hold objects.
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Drawing = SimTest;

struct Corners {
    double x1 = -1, y1 = -1, x2 = -1, y2 = -1;
    bool operator==(const Corners&) const = default;
};

TEST_F(Drawing, TheBoundingBoxOfAnEmptyListCoversEveryViewsObjects) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Corners none;
    EXPECT_FALSE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), nullptr, &none.x1, &none.y1, &none.x2, &none.y2));
    EXPECT_EQ(none, Corners());  // untouched

    Handle a = AddSegment(s.segments.get(), 10, 20, 30, 5);
    Handle detail(IViews_Add(s.views.get(), 1));
    Handle detail_segments(IDrawingContainer_GetLineSegments(detail.get()));
    Handle b = AddSegment(detail_segments.get(), 500, -20, 480, 0);
    Corners c;
    ASSERT_TRUE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), nullptr, &c.x1, &c.y1, &c.x2, &c.y2));
    EXPECT_EQ(c, (Corners{10, -20, 500, 20}));
    List only_a{a.get()};
    ASSERT_TRUE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), only_a.get(), &c.x1, &c.y1, &c.x2, &c.y2));
    EXPECT_EQ(c, (Corners{10, 5, 30, 20}));

    // Another drawing's object in the list refuses the call.
    Handle other = NewDrawing();
    Sheet o = SheetOf(other.get());
    Handle foreign = AddSegment(o.segments.get(), 0, 0, 1, 1);
    List mixed{a.get(), foreign.get()};
    Corners m;
    EXPECT_FALSE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), mixed.get(), &m.x1, &m.y1, &m.x2, &m.y2));
    EXPECT_EQ(m, Corners());
}

TEST_F(Drawing, MoveRotateAndDestroyActOnTheListedObjectsOrRefuseTheList) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle a = AddSegment(s.segments.get(), 1, 0, 3, 0);
    Handle b = AddSegment(s.segments.get(), 0, 1, 0, 2);
    List twice{a.get(), a.get()};
    EXPECT_TRUE(ITavraDocument2D_MoveObjects(drawing.get(), twice.get(), 10, 5));
    EXPECT_EQ(ILineSegment_GetX1(a.get()), 11);  // moved once
    EXPECT_EQ(ILineSegment_GetY2(a.get()), 5);
    EXPECT_EQ(ILineSegment_GetX1(b.get()), 0);
    List both{a.get(), b.get()};
    EXPECT_TRUE(ITavraDocument2D_RotateObjects(drawing.get(), both.get(), 0, 0, 90));
    EXPECT_EQ(ILineSegment_GetX1(a.get()), -5);
    EXPECT_EQ(ILineSegment_GetAngle(b.get()), 180);

    List with_null{a.get(), nullptr};  // a null element refuses the whole list
    EXPECT_FALSE(ITavraDocument2D_DestroyObjects(drawing.get(), with_null.get()));
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 2);
    EXPECT_TRUE(ITavraDocument2D_DestroyObjects(drawing.get(), twice.get()));
    EXPECT_FALSE(IDrawingObject_IsValid(a.get()));
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 1);
}

TEST_F(Drawing, DeletedAndClosedObjectsStayReadableWhileHeldButInvalid) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle a = AddSegment(s.segments.get(), 0, 0, 1, 0);
    Handle b = AddSegment(s.segments.get(), 0, 0, 2, 0);
    EXPECT_EQ(Refs(b.get()), 2);  // ours and the view's
    EXPECT_TRUE(IDrawingObject_Delete(b.get()));
    EXPECT_FALSE(IDrawingObject_IsValid(b.get()));
    EXPECT_EQ(IDrawingObject_GetView(b.get()), nullptr);
    EXPECT_EQ(Refs(b.get()), 1);
    EXPECT_EQ(ILineSegment_GetX2(b.get()), 2);
    EXPECT_FALSE(IDrawingObject_Delete(b.get()));

    EXPECT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    EXPECT_FALSE(IDrawingObject_IsValid(a.get()));
    EXPECT_EQ(Refs(a.get()), 1);
    EXPECT_EQ(ILineSegments_Add(s.segments.get()), nullptr);  // the faces answer nothing
}

}  // namespace
}  // namespace sim_test
