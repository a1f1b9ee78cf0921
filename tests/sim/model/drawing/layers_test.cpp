// A drawing's layers and layer groups as clients use them: the layer a new
// drawing starts with, unique names and numbers, group members and their
// visibility, detached and deleted groups, and all of it through a file.
#include "sim_fixture.h"

namespace sim_test {
namespace {

using Layers = SimTest;

// A new flag list for a group's layer states.
struct Flags {
    explicit Flags(std::initializer_list<int> flags) : v(BoolVector_Create(flags.size())) {
        uint64_t i = 0;
        for (int flag : flags) BoolVector_Set(v, i++, flag);
    }
    ~Flags() { BoolVector_Delete(v); }
    BoolVector_t* v;
};

std::vector<int> States(void* group) {
    BoolVector_t* states = ILayerGroup_GetLayerStates(group);
    std::vector<int> out(states->data, states->data + states->size);
    BoolVector_Delete(states);
    return out;
}

// The drawing's own list of layers and its list of groups.
struct Lists {
    Handle layers, groups;
};
Lists ListsOf(void* drawing) {
    Handle manager(ITavraDocument2D_GetViewsAndLayersManager(drawing));
    Handle views(IViewsAndLayersManager_GetViews(manager.get()));
    Handle view(IViews_GetActiveView(views.get()));
    return {Handle(IView_GetLayers(view.get())), Handle(IViewsAndLayersManager_GetLayerGroups(manager.get()))};
}

TEST_F(Layers, ANewDrawingHasLayerZeroMainCurrentInTheOneGroupLayers) {
    Handle drawing = NewDrawing();
    Lists lists = ListsOf(drawing.get());
    Handle main(ILayers_GetLayerByNumber(lists.layers.get(), 0));
    EXPECT_EQ(Take(ILayer_GetName(main.get())), TVAPIC_TEXT("Main"));
    EXPECT_TRUE(ILayer_IsCurrent(main.get()) && ILayer_IsVisible(main.get()) && ILayer_IsPrintable(main.get()));
    EXPECT_EQ(ILayers_GetLayer(lists.layers.get(), 1), nullptr);

    Handle group(ILayerGroups_GetItem(lists.groups.get(), 0));
    EXPECT_EQ(Take(ILayerGroup_GetName(group.get())), TVAPIC_TEXT("Layers"));
    EXPECT_EQ(ILayerGroups_GetItem(lists.groups.get(), 1), nullptr);
    Handle members(ILayerGroup_GetLayers(group.get()));
    Handle member(ILayers_GetLayer(members.get(), 0));
    EXPECT_TRUE(IAPIObject_IsSameObjects(member.get(), main.get()));
}

TEST_F(Layers, NewLayersTakeTheNextFreeNumberAndNamesStayUniqueAndNonEmpty) {
    Handle drawing = NewDrawing();
    Lists lists = ListsOf(drawing.get());
    Handle walls(ILayers_Add(lists.layers.get(), TVAPIC_TEXT("Walls")));
    Handle numbered(ILayers_GetLayerByNumber(lists.layers.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(numbered.get(), walls.get()));
    for (const tvWChar* refused : {TVAPIC_TEXT("Walls"), TVAPIC_TEXT(""), static_cast<const tvWChar*>(nullptr)}) {
        EXPECT_EQ(ILayers_Add(lists.layers.get(), refused), nullptr);
        ILayer_SetName(walls.get(), refused);
    }
    ILayer_SetName(walls.get(), TVAPIC_TEXT("Main"));
    EXPECT_EQ(Take(ILayer_GetName(walls.get())), TVAPIC_TEXT("Walls"));
    ILayer_SetName(walls.get(), TVAPIC_TEXT("Doors"));
    Handle by_name(ILayers_GetLayerByName(lists.layers.get(), TVAPIC_TEXT("Doors")));
    EXPECT_TRUE(IAPIObject_IsSameObjects(by_name.get(), walls.get()));
    // The drawing's list holds every layer: it takes none in or out.
    EXPECT_FALSE(ILayers_Detach(lists.layers.get(), walls.get()));

    // New objects go on the current layer, and only onto the drawing's layers.
    ILayer_SetCurrent(walls.get(), 1);
    Sheet s = SheetOf(drawing.get());
    Handle segment = AddSegment(s.segments.get(), 0, 0, 1, 1);
    EXPECT_EQ(IDrawingObject_GetLayerNumber(segment.get()), 1);
    IDrawingObject_SetLayerNumber(segment.get(), 7);
    EXPECT_EQ(IDrawingObject_GetLayerNumber(segment.get()), 1);
    EXPECT_EQ(ILayer_GetObjectCount(walls.get()), 1);
}

TEST_F(Layers, AGroupTakesMembersOnceAndItsStatesAreTheirVisibility) {
    Handle drawing = NewDrawing();
    Lists lists = ListsOf(drawing.get());
    Handle plan(ILayerGroups_Add(lists.groups.get(), TVAPIC_TEXT("Plan")));
    Handle members(ILayerGroup_GetLayers(plan.get()));
    Handle main(ILayers_GetLayerByNumber(lists.layers.get(), 0));
    Handle roof(ILayers_Add(members.get(), TVAPIC_TEXT("Roof")));  // into the drawing and the group
    Handle listed(ILayers_GetLayerByName(lists.layers.get(), TVAPIC_TEXT("Roof")));
    EXPECT_TRUE(roof && IAPIObject_IsSameObjects(listed.get(), roof.get()));
    EXPECT_TRUE(ILayers_Attach(members.get(), main.get()));
    EXPECT_FALSE(ILayers_Attach(members.get(), main.get()));
    Handle other = NewDrawing();
    Handle foreign(ILayers_GetLayerByNumber(ListsOf(other.get()).layers.get(), 0));
    EXPECT_FALSE(ILayers_Attach(members.get(), foreign.get()));

    EXPECT_EQ(States(plan.get()), (std::vector<int>{1, 1}));  // roof, then main
    ILayerGroup_SetLayerStates(plan.get(), Flags({0}).v);  // one per member, or nothing changes
    EXPECT_EQ(States(plan.get()), (std::vector<int>{1, 1}));
    ILayerGroup_SetLayerStates(plan.get(), Flags({1, 0}).v);
    EXPECT_FALSE(ILayer_IsVisible(main.get()));
    EXPECT_TRUE(ILayers_Detach(members.get(), roof.get()));
    EXPECT_FALSE(ILayers_Detach(members.get(), roof.get()));
    EXPECT_EQ(States(plan.get()), (std::vector<int>{0}));
}

TEST_F(Layers, ADetachedGroupWaitsAsideAndADeletedOneAnswersNothing) {
    Handle drawing = NewDrawing();
    Lists lists = ListsOf(drawing.get());
    Handle plan(ILayerGroups_Add(lists.groups.get(), TVAPIC_TEXT("Plan")));
    ILayerGroup_SetCurrent(plan.get(), 1);
    EXPECT_TRUE(ILayerGroups_Detach(lists.groups.get(), plan.get()));
    EXPECT_FALSE(ILayerGroup_IsCurrent(plan.get()));
    EXPECT_EQ(ILayerGroups_GetItemByName(lists.groups.get(), TVAPIC_TEXT("Plan")), nullptr);
    EXPECT_TRUE(ILayerGroups_Attach(lists.groups.get(), plan.get()));
    EXPECT_FALSE(ILayerGroups_Attach(lists.groups.get(), plan.get()));
    Handle again(ILayerGroups_GetItem(lists.groups.get(), 1));
    EXPECT_TRUE(IAPIObject_IsSameObjects(again.get(), plan.get()));

    EXPECT_TRUE(ILayerGroup_Delete(plan.get()));
    EXPECT_EQ(ILayerGroups_GetItem(lists.groups.get(), 1), nullptr);
    EXPECT_EQ(ILayerGroup_GetLayers(plan.get()), nullptr);
    EXPECT_FALSE(ILayerGroup_Delete(plan.get()));
}

TEST_F(Layers, LayersAndGroupsComeBackFromTheFileAsSaved) {
    Text path = PathTo("layers.tvd");
    {
        Handle drawing = NewDrawing();
        Lists lists = ListsOf(drawing.get());
        Handle walls(ILayers_Add(lists.layers.get(), TVAPIC_TEXT("Walls")));
        ILayer_SetColor(walls.get(), 0xFF8000);
        ILayer_SetComment(walls.get(), TVAPIC_TEXT("outer"));
        ILayer_SetVisible(walls.get(), 0);
        ILayer_SetCurrent(walls.get(), 1);
        Handle plan(ILayerGroups_Add(lists.groups.get(), TVAPIC_TEXT("Plan")));
        Handle members(ILayerGroup_GetLayers(plan.get()));
        ILayers_Attach(members.get(), walls.get());
        ILayerGroup_SetCurrent(plan.get(), 1);
        ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));
        ILayer_SetPrintable(walls.get(), 0);  // a change to a layer is a change to the drawing
        EXPECT_TRUE(ITavraDocument_IsChanged(drawing.get()));
        ITavraDocument_Close(drawing.get(), 0);
    }
    Handle opened(IDocuments_Open(documents(), path.c_str(), 1, 0));
    ASSERT_TRUE(opened);
    Lists lists = ListsOf(opened.get());
    Handle walls(ILayers_GetLayerByNumber(lists.layers.get(), 1));
    EXPECT_EQ(Take(ILayer_GetName(walls.get())), TVAPIC_TEXT("Walls"));
    EXPECT_EQ(Take(ILayer_GetComment(walls.get())), TVAPIC_TEXT("outer"));
    EXPECT_EQ(ILayer_GetColor(walls.get()), 0xFF8000);
    EXPECT_FALSE(ILayer_IsVisible(walls.get()));
    EXPECT_TRUE(ILayer_IsCurrent(walls.get()));
    Handle plan(ILayerGroups_GetItemByName(lists.groups.get(), TVAPIC_TEXT("Plan")));
    EXPECT_TRUE(ILayerGroup_IsCurrent(plan.get()));
    Handle members(ILayerGroup_GetLayers(plan.get()));
    Handle member(ILayers_GetLayer(members.get(), 0));
    EXPECT_TRUE(IAPIObject_IsSameObjects(member.get(), walls.get()));
}

}  // namespace
}  // namespace sim_test
