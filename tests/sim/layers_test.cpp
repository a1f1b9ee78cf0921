// Layers and layer groups of a drawing, and the areas and ids of its objects.
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Layers = SimTest;

TEST_F(Layers, GroupsAreAddedDetachedAttachedAndDeleted) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle groups(IViewsAndLayersManager_GetLayerGroups(s.manager.get()));
    Handle main_group(ILayerGroups_GetItem(groups.get(), 0));
    EXPECT_TRUE(ILayerGroup_IsCurrent(main_group.get()));
    EXPECT_EQ(ILayerGroups_Add(groups.get(), nullptr), nullptr);  // a group needs a name
    Handle walls(ILayerGroups_Add(groups.get(), TVAPIC_TEXT("Walls")));
    ASSERT_TRUE(walls);
    EXPECT_NE(ILayerGroup_GetUniqueId(walls.get()), ILayerGroup_GetUniqueId(main_group.get()));
    ILayerGroup_SetCurrent(walls.get(), 1);
    EXPECT_FALSE(ILayerGroup_IsCurrent(main_group.get()));

    // Layers added through a group belong to the drawing as well.
    Handle members(ILayerGroup_GetLayers(walls.get()));
    Handle brick(ILayers_Add(members.get(), TVAPIC_TEXT("Brick")));
    Handle all(IView_GetLayers(s.view.get()));
    Handle found(ILayers_GetLayerByName(all.get(), TVAPIC_TEXT("Brick")));
    EXPECT_TRUE(IAPIObject_IsSameObjects(found.get(), brick.get()));
    EXPECT_FALSE(ILayers_Detach(all.get(), brick.get()));  // the drawing keeps every layer
    EXPECT_TRUE(ILayers_Detach(members.get(), brick.get()));
    EXPECT_FALSE(ILayers_Detach(members.get(), brick.get()));
    EXPECT_EQ(ILayers_GetLayer(members.get(), 0), nullptr);

    // A group of another drawing is not this collection's to take.
    Handle other = NewDrawing();
    Sheet o = SheetOf(other.get());
    Handle other_groups(IViewsAndLayersManager_GetLayerGroups(o.manager.get()));
    Handle foreign(ILayerGroups_GetItem(other_groups.get(), 0));
    EXPECT_FALSE(ILayerGroups_Detach(groups.get(), foreign.get()));

    EXPECT_TRUE(ILayerGroups_Detach(groups.get(), walls.get()));
    EXPECT_EQ(ILayerGroups_GetItemByName(groups.get(), TVAPIC_TEXT("Walls")), nullptr);
    EXPECT_FALSE(ILayerGroup_IsCurrent(walls.get()));
    EXPECT_TRUE(ILayerGroups_Attach(groups.get(), walls.get()));
    EXPECT_FALSE(ILayerGroups_Attach(groups.get(), walls.get()));
    Handle back(ILayerGroups_GetItem(groups.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(back.get(), walls.get()));
    back = Handle();

    EXPECT_TRUE(ILayerGroup_Delete(walls.get()));
    EXPECT_FALSE(ILayerGroup_Delete(walls.get()));
    EXPECT_EQ(ILayerGroups_GetItem(groups.get(), 1), nullptr);
    EXPECT_EQ(ILayerGroup_GetLayers(walls.get()), nullptr);
    EXPECT_EQ(Refs(walls.get()), 1);
}

TEST_F(Layers, NamesStayUniqueAndStatesMatchTheGroup) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle all(IView_GetLayers(s.view.get()));
    Handle a(ILayers_Add(all.get(), TVAPIC_TEXT("A")));
    Handle b(ILayers_Add(all.get(), TVAPIC_TEXT("B")));
    EXPECT_EQ(ILayers_Add(all.get(), nullptr), nullptr);
    ILayer_SetName(b.get(), TVAPIC_TEXT("A"));  // taken
    EXPECT_EQ(Take(ILayer_GetName(b.get())), TVAPIC_TEXT("B"));
    ILayer_SetName(b.get(), TVAPIC_TEXT("C"));
    EXPECT_EQ(Take(ILayer_GetName(b.get())), TVAPIC_TEXT("C"));
    ILayer_SetCurrent(b.get(), 0);  // unsetting does not move the current layer
    Handle main(ILayers_GetLayerByNumber(all.get(), 0));
    EXPECT_TRUE(ILayer_IsCurrent(main.get()));

    Handle groups(IViewsAndLayersManager_GetLayerGroups(s.manager.get()));
    Handle group(ILayerGroups_GetItem(groups.get(), 0));
    Handle members(ILayerGroup_GetLayers(group.get()));
    ASSERT_TRUE(ILayers_Attach(members.get(), a.get()));
    BoolVector_t* wrong = BoolVector_Create(3);
    ILayerGroup_SetLayerStates(group.get(), wrong);  // one state per member, or nothing
    BoolVector_Delete(wrong);
    EXPECT_TRUE(ILayer_IsVisible(a.get()));
    BoolVector_t* states = BoolVector_Create(2);
    BoolVector_Set(states, 0, 1);
    BoolVector_Set(states, 1, 0);
    ILayerGroup_SetLayerStates(group.get(), states);
    BoolVector_Delete(states);
    EXPECT_TRUE(ILayer_IsVisible(main.get()));
    EXPECT_FALSE(ILayer_IsVisible(a.get()));
}

TEST_F(Layers, AreasAndIdsOfObjects) {
    Handle drawing = NewDrawing();
    Sheet s = SheetOf(drawing.get());
    Handle a = AddSegment(s.segments.get(), 0, 0, 4, 3);
    Handle detail(IViews_Add(s.views.get(), 1));
    Handle detail_segments(IDrawingContainer_GetLineSegments(detail.get()));
    Handle b = AddSegment(detail_segments.get(), -6, 1, -5, 9);

    List just_detail{detail.get()};
    Handle area(ITavraDocument2D_ViewGetObjectsArea(drawing.get(), just_detail.get()));
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ASSERT_TRUE(IGabaritObject_GetCurrentGabarit(area.get(), &x1, &y1, &x2, &y2));
    EXPECT_EQ(x1, -6);
    EXPECT_EQ(y2, 9);
    EXPECT_TRUE(IGabaritObject_AddGabarit(area.get(), 10, 10, 11, 12));
    ASSERT_TRUE(IGabaritObject_GetCurrentGabarit(area.get(), &x1, &y1, &x2, &y2));
    EXPECT_EQ(x2, 11);
    EXPECT_EQ(y2, 12);
    Handle everything(ITavraDocument2D_ViewGetObjectsArea(drawing.get(), nullptr));
    ASSERT_TRUE(IGabaritObject_GetCurrentGabarit(everything.get(), &x1, &y1, &x2, &y2));
    EXPECT_EQ(x1, -6);
    EXPECT_EQ(x2, 4);
    List a_segment{a.get()};  // not a view
    EXPECT_EQ(ITavraDocument2D_ViewGetObjectsArea(drawing.get(), a_segment.get()), nullptr);

    DoubleVector_t* id = DoubleVector_Create(1);
    DoubleVector_Set(id, 0, IDrawingObject_GetId(b.get()));
    Handle by_id(ITavraDocument2D_GetObjectById(drawing.get(), id));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_id.get(), b.get()));
    DoubleVector_Set(id, 0, 999);
    EXPECT_EQ(ITavraDocument2D_GetObjectById(drawing.get(), id), nullptr);
    DoubleVector_Delete(id);
}

}  // namespace
}  // namespace sim_test
