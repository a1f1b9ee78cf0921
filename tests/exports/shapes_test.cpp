// Call shapes the export sweep exercises but cannot judge alone: skipped
// out-parameters, an object argument of the method's own interface, and
// object lists holding null and foreign elements.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "probe/probe.h"
#include "tvAPIC.h"

namespace {


using Probe = tvprobe::Held;

TEST(OutParameterSkipping, ANullPointerIsSkippedAndItsNeighbourStillWritten) {
    Probe slot({"IArcSlot"});
    double x = 1.5;
    EXPECT_TRUE(IArcSlot_GetPoint(slot.handle(), 2, &x, nullptr));
    ASSERT_EQ(slot->calls.size(), 1u);
    EXPECT_EQ(slot->calls[0].args, (std::vector<std::string>{"2", "&1.5", "&0"}));
    EXPECT_EQ(x, slot->answers.out_real);
}

TEST(SameInterfaceArgument, TheOtherCurveIsAskedForTheCurveInterface) {
    Probe curve({"ICurve2D"});
    Probe other({"ICurve2D"});
    DoubleVector_t* points = ICurve2D_Intersect(curve.handle(), other.handle());
    ASSERT_NE(points, nullptr);
    ASSERT_EQ(curve->calls.size(), 1u);
    EXPECT_EQ(curve->calls[0].args[0], other.name());
    EXPECT_EQ(other->queries, 1);
    EXPECT_EQ(other->refs(), 1);
    DoubleVector_Delete(points);
}

TEST(SameInterfaceArgument, AForeignOrNullOtherCurveReachesTheHostAsNull) {
    Probe curve({"ICurve2D"});
    Probe line({"ILineSegment"});  // no ICurve2D face
    DoubleVector_Delete(ICurve2D_Intersect(curve.handle(), line.handle()));
    DoubleVector_Delete(ICurve2D_Intersect(curve.handle(), nullptr));
    ASSERT_EQ(curve->calls.size(), 2u);
    EXPECT_EQ(curve->calls[0].args[0], "null");
    EXPECT_EQ(curve->calls[1].args[0], "null");
}

TEST(SameInterfaceArgument, TheOtherCurveIsNotQueriedWhenTheHandleFails) {
    Probe foreign({"ILineSegment"});
    Probe other({"ICurve2D"});
    EXPECT_EQ(ICurve2D_Intersect(foreign.handle(), other.handle()), nullptr);
    EXPECT_EQ(other->queries, 0);
}

TEST(ObjectListArguments, NullAndForeignElementsArriveAsNullsInTheirPlaces) {
    Probe reposition({"IBodyReposition"});
    Probe body({"IModelObject"});
    Probe sketch({"IDrawingObject"});  // not a model object
    ObjectReferenceVector_t* list = ObjectReferenceVector_Create(3);
    ObjectReferenceVector_Set(list, 0, body.handle());
    ObjectReferenceVector_Set(list, 1, nullptr);
    ObjectReferenceVector_Set(list, 2, sketch.handle());
    IBodyReposition_SetRepositionObjects(reposition.handle(), list);
    ASSERT_EQ(reposition->calls.size(), 1u);
    EXPECT_EQ(reposition->calls[0].args[0], "[" + body.name() + ",null,null]");
    // The list's references went back; the caller's stay as they were.
    EXPECT_EQ(body->refs(), 1);
    EXPECT_EQ(sketch->refs(), 1);
    EXPECT_EQ(ObjectReferenceVector_Get(list, 0), body.handle());
    ObjectReferenceVector_Delete(list);
    EXPECT_EQ(body->refs(), 1);
}

}  // namespace
