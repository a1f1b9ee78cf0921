// A drawing's views and line segments: adding them through the active
// view's container, their geometry, and the drawing's operations on lists.
#include <cmath>
#include <numbers>

#include "sim_fixture.h"

namespace sim_test {
namespace {

using Drawing = SimTest;

struct Corners {
    double x1 = -1, y1 = -1, x2 = -1, y2 = -1;
};

TEST_F(Drawing, SegmentsAddedThroughTheActiveViewKeepTheirEnds) {
    Handle drawing = NewDrawing();
    EXPECT_EQ(ITavraDocument_GetDocumentType(drawing.get()), 1);
    EXPECT_FALSE(ITavraDocument_IsChanged(drawing.get()));
    Sheet s = SheetOf(drawing.get());
    ASSERT_TRUE(s.segments);
    EXPECT_EQ(Take(IView_GetName(s.view.get())), TVAPIC_TEXT("Sheet"));
    EXPECT_EQ(IView_GetNumber(s.view.get()), 1);
    EXPECT_TRUE(IView_IsCurrent(s.view.get()));

    Handle first = AddSegment(s.segments.get(), 0, 0, 30, 40);
    Handle second = AddSegment(s.segments.get(), -5, 2, 7, 2);
    EXPECT_TRUE(ITavraDocument_IsChanged(drawing.get()));
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 2);
    Handle again(ILineSegments_GetLineSegment(s.segments.get(), 0));
    EXPECT_TRUE(IAPIObject_IsSameObjects(again.get(), first.get()));
    EXPECT_FALSE(IAPIObject_IsSameObjects(first.get(), second.get()));
    EXPECT_EQ(ILineSegments_GetLineSegment(s.segments.get(), 2), nullptr);
    EXPECT_EQ(ILineSegments_GetLineSegment(s.segments.get(), -1), nullptr);
    EXPECT_EQ(ILineSegment_GetX1(second.get()), -5);
    EXPECT_EQ(ILineSegment_GetY2(second.get()), 2);

    // Every segment is a drawing object of its view, with an id of its own.
    EXPECT_EQ(IDrawingObject_GetDrawingObjectType(first.get()), 1);
    EXPECT_TRUE(IDrawingObject_IsValid(first.get()));
    EXPECT_FALSE(IDrawingObject_IsTemp(first.get()));
    Handle owner(IDrawingObject_GetView(first.get()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(owner.get(), s.view.get()));
    EXPECT_NE(IDrawingObject_GetId(first.get()), IDrawingObject_GetId(second.get()));
    EXPECT_EQ(IDrawingObject_GetCurve2D(first.get()), nullptr);
    auto listed = TakeAll(IDrawingContainer_GetObjects(s.view.get()));
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_TRUE(IAPIObject_IsSameObjects(listed[1].get(), second.get()));
}

TEST_F(Drawing, LengthAndAngleFollowTheEndsAndMoveThem) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle segment = AddSegment(s.segments.get(), 1, 1, 4, 5);
    void* h = segment.get();
    EXPECT_DOUBLE_EQ(ILineSegment_GetLength(h), 5);
    EXPECT_NEAR(ILineSegment_GetAngle(h), std::atan2(4.0, 3.0) * 180 / std::numbers::pi, 1e-12);

    ILineSegment_SetLength(h, 10);  // the end point moves along the angle
    EXPECT_DOUBLE_EQ(ILineSegment_GetX2(h), 7);
    EXPECT_DOUBLE_EQ(ILineSegment_GetY2(h), 9);
    EXPECT_EQ(ILineSegment_GetLength(h), 10);

    ILineSegment_SetAngle(h, 90);  // turns about the start point
    EXPECT_EQ(ILineSegment_GetX2(h), 1);
    EXPECT_EQ(ILineSegment_GetY2(h), 11);
    EXPECT_EQ(ILineSegment_GetAngle(h), 90);
    EXPECT_EQ(ILineSegment_GetLength(h), 10);
    ILineSegment_SetAngle(h, -90);
    EXPECT_EQ(ILineSegment_GetAngle(h), 270);
    EXPECT_EQ(ILineSegment_GetY2(h), -9);

    // A zero-length segment keeps its direction for the next length.
    ILineSegment_SetLength(h, 0);
    EXPECT_EQ(ILineSegment_GetY2(h), 1);
    ILineSegment_SetLength(h, 2);
    EXPECT_EQ(ILineSegment_GetY2(h), -1);

    // Lengths below zero and coordinates that are not numbers are refused.
    ILineSegment_SetLength(h, -3);
    ILineSegment_SetX1(h, std::nan(""));
    EXPECT_EQ(ILineSegment_GetLength(h), 2);
    EXPECT_EQ(ILineSegment_GetX1(h), 1);

    ILineSegment_SetX2(h, 3);  // (1,1)-(3,-1): the angle follows the end
    EXPECT_DOUBLE_EQ(ILineSegment_GetAngle(h), 315);
    EXPECT_DOUBLE_EQ(ILineSegment_GetLength(h), std::sqrt(8.0));
}

TEST_F(Drawing, GabaritOfAnEmptyListCoversEveryViewsObjects) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    ObjectReferenceVector_t* none = ObjectReferenceVector_Create(0);
    Corners c;
    EXPECT_FALSE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), none, &c.x1, &c.y1, &c.x2, &c.y2));
    EXPECT_EQ(c.x1, -1);  // untouched

    Handle a = AddSegment(s.segments.get(), 10, 20, 30, 5);
    Handle detail(IViews_Add(s.views.get(), 1));
    Handle detail_segments(IDrawingContainer_GetLineSegments(detail.get()));
    Handle b = AddSegment(detail_segments.get(), 500, -20, 480, 0);
    ASSERT_TRUE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), none, &c.x1, &c.y1, &c.x2, &c.y2));
    EXPECT_EQ(c.x1, 10);
    EXPECT_EQ(c.y1, -20);
    EXPECT_EQ(c.x2, 500);
    EXPECT_EQ(c.y2, 20);
    ObjectReferenceVector_Delete(none);
    // A null list is the empty list.
    Corners n;
    ASSERT_TRUE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), nullptr, &n.x1, &n.y1, &n.x2, &n.y2));
    EXPECT_EQ(n.x2, 500);

    List only_a{a.get()};
    ASSERT_TRUE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), only_a.get(), &c.x1, &c.y1, &c.x2, &c.y2));
    EXPECT_EQ(c.y1, 5);
    EXPECT_EQ(c.x2, 30);

    // The document's gabarit is the A4 sheet and what lies beyond it.
    Corners d;
    ASSERT_TRUE(ITavraDocument_GetDocumentGabarit(drawing.get(), &d.x1, &d.y1, &d.x2, &d.y2));
    EXPECT_EQ(d.x1, 0);
    EXPECT_EQ(d.y1, -20);
    EXPECT_EQ(d.x2, 500);
    EXPECT_EQ(d.y2, 297);

    // Another drawing's object in the list is refused.
    Handle other = NewDrawing();
    Sheet o = SheetOf(other.get());
    Handle foreign = AddSegment(o.segments.get(), 0, 0, 1, 1);
    List mixed{a.get(), foreign.get()};
    Corners m;
    EXPECT_FALSE(ITavraDocument2D_GetObjectsGabarit(drawing.get(), mixed.get(), &m.x1, &m.y1, &m.x2, &m.y2));
    EXPECT_EQ(m.x1, -1);
}

TEST_F(Drawing, DeletedObjectsBecomeInvalidAndLeaveTheirView) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle a = AddSegment(s.segments.get(), 0, 0, 1, 0);
    Handle b = AddSegment(s.segments.get(), 0, 0, 2, 0);
    Handle c = AddSegment(s.segments.get(), 0, 0, 3, 0);
    EXPECT_EQ(Refs(b.get()), 2);  // ours and the view's

    EXPECT_TRUE(IDrawingObject_Delete(b.get()));
    EXPECT_FALSE(IDrawingObject_IsValid(b.get()));
    EXPECT_EQ(IDrawingObject_GetView(b.get()), nullptr);
    EXPECT_EQ(Refs(b.get()), 1);
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 2);
    Handle now_second(ILineSegments_GetLineSegment(s.segments.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(now_second.get(), c.get()));
    EXPECT_FALSE(IDrawingObject_Delete(b.get()));
    EXPECT_EQ(ILineSegment_GetX2(b.get()), 2);  // still readable while held

    // A list with a deleted object is refused as a whole.
    List with_deleted{a.get(), b.get()};
    EXPECT_FALSE(ITavraDocument2D_DestroyObjects(drawing.get(), with_deleted.get()));
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 2);
    List just_a{a.get()};
    EXPECT_TRUE(ITavraDocument2D_DestroyObjects(drawing.get(), just_a.get()));
    EXPECT_FALSE(IDrawingObject_IsValid(a.get()));
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 1);
}

TEST_F(Drawing, MoveAndRotateChangeTheListedObjectsOnly) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle a = AddSegment(s.segments.get(), 1, 0, 3, 0);
    Handle b = AddSegment(s.segments.get(), 0, 1, 0, 2);
    List just_a{a.get()};
    EXPECT_TRUE(ITavraDocument2D_MoveObjects(drawing.get(), just_a.get(), 10, 5));
    EXPECT_EQ(ILineSegment_GetX1(a.get()), 11);
    EXPECT_EQ(ILineSegment_GetY2(a.get()), 5);
    EXPECT_EQ(ILineSegment_GetX1(b.get()), 0);

    List both{a.get(), b.get()};
    EXPECT_TRUE(ITavraDocument2D_RotateObjects(drawing.get(), both.get(), 0, 0, 90));
    EXPECT_EQ(ILineSegment_GetX1(a.get()), -5);
    EXPECT_EQ(ILineSegment_GetY1(a.get()), 11);
    EXPECT_EQ(ILineSegment_GetAngle(a.get()), 90);
    EXPECT_EQ(ILineSegment_GetLength(a.get()), 2);
    EXPECT_EQ(ILineSegment_GetX2(b.get()), -2);
    EXPECT_EQ(ILineSegment_GetAngle(b.get()), 180);

    // Nothing listed, a null element or a non-finite offset: nothing moves.
    ObjectReferenceVector_t* empty = ObjectReferenceVector_Create(0);
    EXPECT_FALSE(ITavraDocument2D_MoveObjects(drawing.get(), empty, 1, 1));
    ObjectReferenceVector_Delete(empty);
    List with_null{a.get(), nullptr};
    EXPECT_FALSE(ITavraDocument2D_MoveObjects(drawing.get(), with_null.get(), 1, 1));
    EXPECT_FALSE(ITavraDocument2D_MoveObjects(drawing.get(), just_a.get(), INFINITY, 1));
    EXPECT_EQ(ILineSegment_GetX1(a.get()), -5);
}

TEST_F(Drawing, ObjectsAreFoundSelectedAndReordered) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle near = AddSegment(s.segments.get(), 0, 0, 10, 0);
    Handle far = AddSegment(s.segments.get(), 0, 5, 10, 5);
    Handle crossing = AddSegment(s.segments.get(), -10, 2, 20, 2);

    Handle found(ITavraDocument2D_FindObject(drawing.get(), 5, 0.5, 1, nullptr));
    EXPECT_TRUE(IAPIObject_IsSameObjects(found.get(), near.get()));
    EXPECT_EQ(ITavraDocument2D_FindObject(drawing.get(), 5, -8, 1, nullptr), nullptr);
    EXPECT_EQ(TakeAll(ITavraDocument2D_FindObjects(drawing.get(), 5, 1, 1, nullptr)).size(), 2u);

    auto window = TakeAll(ITavraDocument2D_SelectObjects(drawing.get(), 0, -1, -1, 11, 6));
    ASSERT_EQ(window.size(), 2u);  // the crossing segment sticks out
    EXPECT_TRUE(IAPIObject_IsSameObjects(window[1].get(), far.get()));
    EXPECT_EQ(TakeAll(ITavraDocument2D_SelectObjects(drawing.get(), 1, 11, 6, -1, 1)).size(), 2u);
    EXPECT_EQ(TakeAll(IView_SelectObjects(s.view.get(), 1, -1, -1, 11, 6)).size(), 3u);

    List just_far{far.get()};
    EXPECT_TRUE(ITavraDocument2D_ChangeObjectsOrder(drawing.get(), just_far.get(), nullptr, 1));  // to the bottom
    Handle bottom(ILineSegments_GetLineSegment(s.segments.get(), 0));
    EXPECT_TRUE(IAPIObject_IsSameObjects(bottom.get(), far.get()));
    EXPECT_TRUE(ITavraDocument2D_ChangeObjectsOrder(drawing.get(), just_far.get(), crossing.get(), 3));  // below
    Handle middle(ILineSegments_GetLineSegment(s.segments.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(middle.get(), far.get()));
    EXPECT_FALSE(ITavraDocument2D_ChangeObjectsOrder(drawing.get(), just_far.get(), far.get(), 2));
    EXPECT_FALSE(ITavraDocument2D_ChangeObjectsOrder(drawing.get(), just_far.get(), nullptr, 9));
}

TEST_F(Drawing, CopiesGoToTheActiveViewWithIdsOfTheirOwn) {
    Handle source = NewDrawing();
    Sheet s = SheetOf(source.get());
    Handle original = AddSegment(s.segments.get(), 1, 2, 3, 4);
    Handle target = NewDrawing();
    Sheet t = SheetOf(target.get());
    List copied{original.get()};
    auto copies = TakeAll(ITavraDocument2D_CopyObjects(target.get(), source.get(), copied.get()));
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(ILineSegment_GetX2(copies[0].get()), 3);
    EXPECT_EQ(IView_GetObjectCount(t.view.get()), 1);
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 1);
    // The source must be the objects' own drawing.
    EXPECT_TRUE(TakeAll(ITavraDocument2D_CopyObjects(target.get(), target.get(), copied.get())).empty());
}

TEST_F(Drawing, ViewsAreAddedNumberedAndPlacedOnTheSheet) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    EXPECT_EQ(IViews_Add(s.views.get(), 0), nullptr);  // one sheet view per drawing
    Handle detail(IViews_Add(s.views.get(), 1));
    EXPECT_EQ(IView_GetNumber(detail.get()), 2);
    EXPECT_EQ(Take(IView_GetName(detail.get())), TVAPIC_TEXT("View 2"));
    Handle by_name(IViews_GetViewByName(s.views.get(), TVAPIC_TEXT("View 2")));
    Handle by_number(IViews_GetViewByNumber(s.views.get(), 2));
    Handle by_index(IViews_GetView(s.views.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_name.get(), detail.get()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_number.get(), detail.get()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_index.get(), detail.get()));
    IView_SetNumber(detail.get(), 1);  // taken by the sheet
    EXPECT_EQ(IView_GetNumber(detail.get()), 2);

    IView_SetCurrent(detail.get(), 1);
    Handle active(IViews_GetActiveView(s.views.get()));
    EXPECT_TRUE(IAPIObject_IsSameObjects(active.get(), detail.get()));
    EXPECT_FALSE(IView_IsCurrent(s.view.get()));

    IView_SetX(detail.get(), 100);
    IView_SetY(detail.get(), 50);
    IView_SetScale(detail.get(), 2);
    IView_SetAngle(detail.get(), 90);
    IView_SetScale(detail.get(), 0);  // refused
    double x = 0, y = 0;
    ASSERT_TRUE(IView_TransformPointToSheet(detail.get(), 3, 1, &x, &y));
    EXPECT_DOUBLE_EQ(x, 98);
    EXPECT_DOUBLE_EQ(y, 56);
    double back_x = 0, back_y = 0;
    ASSERT_TRUE(IView_TransformPointFromSheet(detail.get(), x, y, &back_x, &back_y));
    EXPECT_NEAR(back_x, 3, 1e-12);
    EXPECT_NEAR(back_y, 1, 1e-12);

    // Standard views need the model's file.
    EXPECT_FALSE(IViews_AddStandartViews(s.views.get(), PathTo("missing.tvd").c_str(), nullptr, 0, 0, 1, 10, 10));
    WriteFile("model.tvd", "model");
    EXPECT_TRUE(IViews_AddStandartViews(s.views.get(), PathTo("model.tvd").c_str(), TVAPIC_TEXT("Load"), 0, 0, 1, 80, 60));
    Handle top(IViews_GetViewByName(s.views.get(), TVAPIC_TEXT("Top")));
    EXPECT_EQ(IView_GetViewType(top.get()), 2);
    EXPECT_EQ(IView_GetY(top.get()), 60);
    EXPECT_EQ(IView_GetNumber(top.get()), 4);
}

TEST_F(Drawing, LayersCountTheirObjectsAndHideTheirLinks) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle layers(IView_GetLayers(s.view.get()));
    Handle main(ILayers_GetLayer(layers.get(), 0));
    EXPECT_EQ(Take(ILayer_GetName(main.get())), TVAPIC_TEXT("Main"));
    EXPECT_TRUE(ILayer_IsCurrent(main.get()));
    Handle hidden(ILayers_Add(layers.get(), TVAPIC_TEXT("Hidden")));
    EXPECT_EQ(ILayers_Add(layers.get(), TVAPIC_TEXT("Hidden")), nullptr);  // names are unique
    Handle by_number(ILayers_GetLayerByNumber(layers.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_number.get(), hidden.get()));

    Handle on_main = AddSegment(s.segments.get(), 0, 0, 1, 1);
    ILayer_SetCurrent(hidden.get(), 1);
    Handle on_hidden = AddSegment(s.segments.get(), 0, 0, 2, 2);
    EXPECT_EQ(IDrawingObject_GetLayerNumber(on_hidden.get()), 1);
    IDrawingObject_SetLayerNumber(on_hidden.get(), 7);  // no such layer
    EXPECT_EQ(IDrawingObject_GetLayerNumber(on_hidden.get()), 1);
    EXPECT_EQ(ILayer_GetObjectCount(main.get()), 1);
    EXPECT_EQ(ILayer_GetObjectCount(hidden.get()), 1);

    List both{on_main.get(), on_hidden.get()};
    EXPECT_TRUE(ITavraDocument2D_CreateHyperLink(drawing.get(), both.get(), 1, TVAPIC_TEXT("doc://a"), nullptr, 1));
    int kind = -1;
    EXPECT_EQ(Take(IDrawingObject_GetHyperLinkParam(on_main.get(), &kind)), TVAPIC_TEXT("doc://a"));
    EXPECT_EQ(kind, 1);
    ILayer_SetVisible(hidden.get(), 0);
    EXPECT_EQ(TakeAll(ITavraDocument2D_GetHyperLinkObjects(drawing.get(), 1, nullptr, 0, TVAPIC_TEXT("doc://a"))).size(), 1u);
    EXPECT_EQ(TakeAll(ITavraDocument2D_GetHyperLinkObjects(drawing.get(), 1, nullptr, 1, nullptr)).size(), 2u);
    EXPECT_TRUE(IDrawingObject_DeleteHyperLink(on_main.get()));
    EXPECT_FALSE(IDrawingObject_DeleteHyperLink(on_main.get()));
    EXPECT_EQ(TakeAll(ITavraDocument2D_GetHyperLinkObjects(drawing.get(), 1, nullptr, 1, nullptr)).size(), 1u);

    // A link to an object names it; an address link needs its address.
    List just_main{on_main.get()};
    EXPECT_FALSE(ITavraDocument2D_CreateHyperLink(drawing.get(), just_main.get(), 1, nullptr, nullptr, 0));
    EXPECT_TRUE(ITavraDocument2D_CreateHyperLink(drawing.get(), just_main.get(), 2, nullptr, on_hidden.get(), 0));
    auto pointing = TakeAll(ITavraDocument2D_GetHyperLinkObjects(drawing.get(), 2, on_hidden.get(), 1, nullptr));
    ASSERT_EQ(pointing.size(), 1u);
    EXPECT_TRUE(IAPIObject_IsSameObjects(pointing[0].get(), on_main.get()));

    // The group's states are its layers' visibility.
    Handle groups(IViewsAndLayersManager_GetLayerGroups(s.manager.get()));
    Handle group(ILayerGroups_GetItem(groups.get(), 0));
    EXPECT_EQ(Take(ILayerGroup_GetName(group.get())), TVAPIC_TEXT("Layers"));
    Handle members(ILayerGroup_GetLayers(group.get()));
    EXPECT_EQ(ILayers_GetLayerByName(members.get(), TVAPIC_TEXT("Hidden")), nullptr);  // added to the drawing only
    EXPECT_TRUE(ILayers_Attach(members.get(), hidden.get()));
    BoolVector_t* states = ILayerGroup_GetLayerStates(group.get());
    ASSERT_EQ(states->size, 2u);
    EXPECT_EQ(BoolVector_Get(states, 0), 1);
    EXPECT_EQ(BoolVector_Get(states, 1), 0);
    BoolVector_Delete(states);
}

TEST_F(Drawing, ClosingTheDrawingInvalidatesWhatCallersStillHold) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle segment = AddSegment(s.segments.get(), 0, 0, 1, 1);
    EXPECT_EQ(Refs(s.view.get()), 2);  // ours and the drawing's
    auto objects = TakeAll(IDrawingContainer_GetObjects(s.view.get()));
    Handle again(IDrawingContainer_GetLineSegments(s.view.get()));
    objects.clear();
    again = Handle();
    EXPECT_EQ(Refs(s.view.get()), 2);
    EXPECT_EQ(Refs(segment.get()), 2);

    EXPECT_TRUE(ITavraDocument_Close(drawing.get(), 0));
    EXPECT_FALSE(IDrawingObject_IsValid(segment.get()));
    EXPECT_EQ(Refs(segment.get()), 1);
    EXPECT_EQ(IView_GetObjectCount(s.view.get()), 0);
    EXPECT_EQ(ILineSegments_Add(s.segments.get()), nullptr);
    EXPECT_EQ(IViews_GetActiveView(s.views.get()), nullptr);
    EXPECT_EQ(ITavraDocument2D_GetViewsAndLayersManager(drawing.get()), nullptr);
    EXPECT_FALSE(ITavraDocument_Close(drawing.get(), 0));
}

}  // namespace
}  // namespace sim_test
