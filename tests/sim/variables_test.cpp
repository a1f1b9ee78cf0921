// A drawing's variables: names, expressions that follow each other,
// interval variables and user functions.
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Variables = SimTest;

constexpr int kReal = 0, kInterval = 1, kUserFunction = 2;

TEST_F(Variables, ExpressionsFollowTheVariablesTheyName) {
    Handle drawing = NewDrawing();
    void* d = drawing.get();
    EXPECT_TRUE(ITavraDocument2D_IsVariableNameValid(d, TVAPIC_TEXT("width")));
    Handle width(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("width"), 12, nullptr));
    ASSERT_TRUE(width);
    EXPECT_EQ(Take(IVariable_GetExpression(width.get())), TVAPIC_TEXT("12"));
    Handle area(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("area"), 0, TVAPIC_TEXT("width ^ 2 / 4 + sqrt(16)")));
    ASSERT_TRUE(area);
    EXPECT_EQ(IVariable_GetValue(area.get()), 40);
    EXPECT_TRUE(ITavraDocument_IsChanged(d));

    IVariable_SetValue(width.get(), 2);
    EXPECT_EQ(IVariable_GetValue(area.get()), 5);  // recalculated at once
    EXPECT_EQ(ITavraDocument2D_GetVariablesCount(d, kReal), 2);
    Handle second(ITavraDocument2D_GetVariable(d, kReal, 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(second.get(), area.get()));
    EXPECT_EQ(ITavraDocument2D_GetVariable(d, kReal, 2), nullptr);
    Handle by_name(ITavraDocument2D_GetVariableByName(d, kReal, TVAPIC_TEXT("width")));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_name.get(), width.get()));
    EXPECT_EQ(ITavraDocument2D_GetVariableByName(d, kInterval, TVAPIC_TEXT("width")), nullptr);
    EXPECT_TRUE(ITavraDocument2D_UpdateVariables(d));

    // Names: taken, not identifiers; expressions: unknown names, bad syntax.
    EXPECT_FALSE(ITavraDocument2D_IsVariableNameValid(d, TVAPIC_TEXT("width")));
    EXPECT_FALSE(ITavraDocument2D_IsVariableNameValid(d, TVAPIC_TEXT("2nd")));
    EXPECT_FALSE(ITavraDocument2D_IsVariableNameValid(d, TVAPIC_TEXT("")));
    EXPECT_TRUE(ITavraDocument2D_IsVariableNameValid(d, TVAPIC_TEXT("höhe_2")));
    EXPECT_EQ(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("width"), 1, nullptr), nullptr);
    EXPECT_EQ(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("h"), 1, TVAPIC_TEXT("depth * 2")), nullptr);
    EXPECT_EQ(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("h"), 1, TVAPIC_TEXT("(width")), nullptr);
    EXPECT_EQ(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("h"), 1, TVAPIC_TEXT("width / 0")), nullptr);
    EXPECT_EQ(ITavraDocument2D_GetVariablesCount(d, kReal), 2);
}

TEST_F(Variables, ChangesThatWouldBreakAnExpressionAreRefused) {
    Handle drawing = NewDrawing();
    void* d = drawing.get();
    Handle a(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("a"), 3, nullptr));
    Handle b(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("b"), 0, TVAPIC_TEXT("a + 1")));
    Handle c(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("c"), 0, TVAPIC_TEXT("b")));
    IVariable_SetExpression(b.get(), TVAPIC_TEXT("a * 3"));
    EXPECT_EQ(IVariable_GetValue(b.get()), 9);
    EXPECT_EQ(IVariable_GetValue(c.get()), 9);  // through b
    IVariable_SetExpression(a.get(), TVAPIC_TEXT("c * 2"));  // a cycle through b
    EXPECT_EQ(Take(IVariable_GetExpression(a.get())), TVAPIC_TEXT("3"));
    IVariable_SetExpression(a.get(), TVAPIC_TEXT("a + 1"));  // itself
    EXPECT_EQ(IVariable_GetValue(a.get()), 3);
    EXPECT_FALSE(IVariable_Delete(a.get()));  // b still names it
    EXPECT_FALSE(IVariable_IsReadOnly(a.get()));
    IVariable_SetReadOnly(a.get(), 1);
    IVariable_SetValue(a.get(), 9);
    EXPECT_EQ(IVariable_GetValue(a.get()), 3);

    EXPECT_FALSE(IVariable_Delete(b.get()));  // c names it
    EXPECT_TRUE(IVariable_Delete(c.get()));
    EXPECT_TRUE(IVariable_Delete(b.get()));
    EXPECT_EQ(ITavraDocument2D_GetVariablesCount(d, kReal), 1);
    EXPECT_FALSE(IVariable_Delete(b.get()));
    EXPECT_TRUE(IVariable_Delete(a.get()));
    EXPECT_EQ(ITavraDocument2D_GetVariablesCount(d, kReal), 0);
}

TEST_F(Variables, IntervalsAndUserFunctionsAreKindsOfTheirOwn) {
    Handle drawing = NewDrawing();
    void* d = drawing.get();
    Handle gap(ITavraDocument2D_AddIntervalVariable(d, TVAPIC_TEXT("gap"), 1.5, 2.5));
    ASSERT_TRUE(gap);
    EXPECT_EQ(IIntervalVariable_GetSecondValue(gap.get()), 2.5);
    IIntervalVariable_SetFirstValue(gap.get(), 2);
    EXPECT_EQ(IVariable_GetValue(gap.get()), 2);  // an interval is a variable too
    EXPECT_EQ(IVariable_GetVariableType(gap.get()), kInterval);

    Handle twice(ITavraDocument2D_AddUserFuncVariable(d, TVAPIC_TEXT("twice"), TVAPIC_TEXT("gap * 2")));
    ASSERT_TRUE(twice);
    EXPECT_EQ(IVariable_GetValue(twice.get()), 4);
    IIntervalVariable_SetFirstValue(gap.get(), 5);
    EXPECT_EQ(IVariable_GetValue(twice.get()), 10);
    EXPECT_EQ(ITavraDocument2D_AddUserFuncVariable(d, TVAPIC_TEXT("empty"), nullptr), nullptr);

    Handle plain(ITavraDocument2D_AddVariable(d, TVAPIC_TEXT("plain"), 1, nullptr));
    EXPECT_EQ(IIntervalVariable_GetFirstValue(plain.get()), 0);  // not an interval: nothing answered
    Handle by_name(ITavraDocument2D_GetIntervalVariableByName(d, TVAPIC_TEXT("gap")));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_name.get(), gap.get()));
    Handle function(ITavraDocument2D_GetUserFuncVariable(d, 0));
    EXPECT_TRUE(IAPIObject_IsSameObjects(function.get(), twice.get()));
    EXPECT_EQ(TakeAll(ITavraDocument2D_GetIntervalVariables(d)).size(), 1u);
    EXPECT_EQ(TakeAll(ITavraDocument2D_GetUserFuncVariables(d)).size(), 1u);
    EXPECT_EQ(TakeAll(ITavraDocument2D_GetVariables(d, kUserFunction)).size(), 1u);
    EXPECT_EQ(ITavraDocument2D_GetVariablesCount(d, kReal), 1);
}

}  // namespace
}  // namespace sim_test
