// The drawing's transformation matrix: points, lengths and angles into and
// out of it, and objects drawn in it.
#include <cmath>

#include "sim_fixture.h"

namespace sim_test {
namespace {

using Matrix = SimTest;

TEST_F(Matrix, PointsLengthsAndAnglesRoundTrip) {
    Handle drawing = NewDrawing();
    void* d = drawing.get();
    double x = 7, y = 7, length = 4, angle = 10;
    EXPECT_FALSE(ITavraDocument2D_TransformPointIntoMatrix(d, 1, 2, &x, &y));  // no matrix yet
    EXPECT_FALSE(ITavraDocument2D_DeleteMatrix(d));
    EXPECT_EQ(x, 7);

    ASSERT_TRUE(ITavraDocument2D_CreateMatrix(d, 100, 50, 90, 2, 2));
    ASSERT_TRUE(ITavraDocument2D_TransformPointFromMatrix(d, 3, 1, &x, &y));
    EXPECT_DOUBLE_EQ(x, 98);  // scaled (6, 2), turned (-2, 6), moved
    EXPECT_DOUBLE_EQ(y, 56);
    double back_x = 0, back_y = 0;
    ASSERT_TRUE(ITavraDocument2D_TransformPointIntoMatrix(d, x, y, &back_x, &back_y));
    EXPECT_NEAR(back_x, 3, 1e-12);
    EXPECT_NEAR(back_y, 1, 1e-12);

    ASSERT_TRUE(ITavraDocument2D_TransformLengthFromMatrix(d, &length));
    EXPECT_EQ(length, 8);
    ASSERT_TRUE(ITavraDocument2D_TransformLengthIntoMatrix(d, &length));
    EXPECT_EQ(length, 4);
    ASSERT_TRUE(ITavraDocument2D_TransformAngleFromMatrix(d, &angle));
    EXPECT_NEAR(angle, 100, 1e-12);
    ASSERT_TRUE(ITavraDocument2D_TransformAngleIntoMatrix(d, &angle));
    EXPECT_NEAR(angle, 10, 1e-12);

    // Any angle and scale, mirrored too: into and back out gives the point again.
    ASSERT_TRUE(ITavraDocument2D_CreateMatrix(d, -3.5, 12, 37.25, -0.4, 3));
    for (double px : {0.0, 1.5, -1000.25}) {
        double lx = 0, ly = 0, ox = 0, oy = 0;
        ASSERT_TRUE(ITavraDocument2D_TransformPointIntoMatrix(d, px, 2 * px + 1, &lx, &ly));
        ASSERT_TRUE(ITavraDocument2D_TransformPointFromMatrix(d, lx, ly, &ox, &oy));
        EXPECT_NEAR(ox, px, 1e-9);
        EXPECT_NEAR(oy, 2 * px + 1, 1e-9);
    }
    double a = 123;
    ASSERT_TRUE(ITavraDocument2D_TransformAngleIntoMatrix(d, &a));
    ASSERT_TRUE(ITavraDocument2D_TransformAngleFromMatrix(d, &a));
    EXPECT_NEAR(a, 123, 1e-9);
    // x and y scaled differently: a length has no single image.
    double l = 5;
    EXPECT_FALSE(ITavraDocument2D_TransformLengthFromMatrix(d, &l));
    EXPECT_EQ(l, 5);

    EXPECT_FALSE(ITavraDocument2D_CreateMatrix(d, 0, 0, 0, 0, 1));  // no inverse
    EXPECT_FALSE(ITavraDocument2D_CreateMatrix(d, NAN, 0, 0, 1, 1));
    EXPECT_TRUE(ITavraDocument2D_DeleteMatrix(d));
    EXPECT_FALSE(ITavraDocument2D_TransformAngleFromMatrix(d, &a));
}

TEST_F(Matrix, ObjectsDrawnInTheMatrixMoveToTheirPlace) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle segment = AddSegment(s.segments.get(), 1, 0, 2, 0);
    List just_segment{segment.get()};
    EXPECT_FALSE(ITavraDocument2D_TransformObjects(drawing.get(), just_segment.get()));
    ASSERT_TRUE(ITavraDocument2D_CreateMatrix(drawing.get(), 10, 10, 180, 3, 3));
    ASSERT_TRUE(ITavraDocument2D_TransformObjects(drawing.get(), just_segment.get()));
    EXPECT_EQ(ILineSegment_GetX1(segment.get()), 7);
    EXPECT_EQ(ILineSegment_GetY1(segment.get()), 10);
    EXPECT_EQ(ILineSegment_GetX2(segment.get()), 4);
    EXPECT_EQ(ILineSegment_GetLength(segment.get()), 3);
    EXPECT_DOUBLE_EQ(ILineSegment_GetAngle(segment.get()), 180);
}

}  // namespace
}  // namespace sim_test
