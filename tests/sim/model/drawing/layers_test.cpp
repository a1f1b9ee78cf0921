// A drawing's layers and layer groups as clients use them: the layer a new
// drawing starts with, unique names and numbers, group members and their
// visibility, detached and deleted groups, and all of it through a file.
#include <algorithm>
#include <vector>

#include "sim_fixture.h"

namespace sim_test {
namespace {

using Layers = SimTest;

// The drawing's own list of layers and its list of groups.
struct Lists {
    explicit Lists(void* drawing) : sheet(SheetOf(drawing)) {}
    Sheet sheet;
    Handle layers{IView_GetLayers(sheet.view.get())};
    Handle groups{IViewsAndLayersManager_GetLayerGroups(sheet.manager.get())};
};

bool Same(void* a, Handle b) { return IAPIObject_IsSameObjects(a, b.get()); }

// A group's layer states, set from `flags` first when given.
std::vector<int> States(void* group, std::initializer_list<int> flags = {}) {
    if (flags.size()) {
        BoolVector_t* v = BoolVector_Create(flags.size());
        std::copy(flags.begin(), flags.end(), v->data);
        ILayerGroup_SetLayerStates(group, v);
        BoolVector_Delete(v);
    }
    BoolVector_t* states = ILayerGroup_GetLayerStates(group);
    std::vector<int> out(states->data, states->data + states->size);
    BoolVector_Delete(states);
    return out;
}

TEST_F(Layers, NewLayersTakeTheNextFreeNumberAndUniqueNonEmptyNames) {
    Handle drawing = NewDrawing();
    Lists lists(drawing.get());
    Handle main(ILayers_GetLayerByNumber(lists.layers.get(), 0));
    EXPECT_EQ(Take(ILayer_GetName(main.get())), TVAPIC_TEXT("Main"));
    EXPECT_TRUE(ILayer_IsCurrent(main.get()));
    Handle group(ILayerGroups_GetItem(lists.groups.get(), 0));
    EXPECT_EQ(Take(ILayerGroup_GetName(group.get())), TVAPIC_TEXT("Layers"));
    EXPECT_EQ(States(group.get()), std::vector<int>{1});  // Main, visible

    Handle walls(ILayers_Add(lists.layers.get(), TVAPIC_TEXT("Walls")));
    EXPECT_TRUE(Same(walls.get(), Handle(ILayers_GetLayerByNumber(lists.layers.get(), 1))));
    for (const tvWChar* refused : {TVAPIC_TEXT("Walls"), TVAPIC_TEXT(""), static_cast<const tvWChar*>(nullptr)}) {
        EXPECT_EQ(ILayers_Add(lists.layers.get(), refused), nullptr);
        ILayer_SetName(walls.get(), refused);
    }
    ILayer_SetName(walls.get(), TVAPIC_TEXT("Main"));
    EXPECT_EQ(Take(ILayer_GetName(walls.get())), TVAPIC_TEXT("Walls"));
    EXPECT_FALSE(ILayers_Detach(lists.layers.get(), walls.get()));  // the drawing's list holds every layer
}

TEST_F(Layers, AGroupTakesMembersOnceAndItsStatesAreTheirVisibility) {
    Handle drawing = NewDrawing();
    Lists lists(drawing.get());
    Handle plan(ILayerGroups_Add(lists.groups.get(), TVAPIC_TEXT("Plan")));
    Handle members(ILayerGroup_GetLayers(plan.get()));
    Handle main(ILayers_GetLayerByNumber(lists.layers.get(), 0));
    Handle roof(ILayers_Add(members.get(), TVAPIC_TEXT("Roof")));  // into the drawing and the group
    EXPECT_TRUE(Same(roof.get(), Handle(ILayers_GetLayerByName(lists.layers.get(), TVAPIC_TEXT("Roof")))));
    EXPECT_TRUE(ILayers_Attach(members.get(), main.get()));
    EXPECT_FALSE(ILayers_Attach(members.get(), main.get()));
    Handle other = NewDrawing();
    EXPECT_FALSE(ILayers_Attach(members.get(), Handle(ILayers_GetLayer(Lists(other.get()).layers.get(), 0)).get()));

    EXPECT_EQ(States(plan.get(), {0}), (std::vector<int>{1, 1}));  // one state per member, or nothing changes
    EXPECT_EQ(States(plan.get(), {1, 0}), (std::vector<int>{1, 0}));
    EXPECT_FALSE(ILayer_IsVisible(main.get()));
    EXPECT_TRUE(ILayers_Detach(members.get(), roof.get()));
    EXPECT_FALSE(ILayers_Detach(members.get(), roof.get()));
    EXPECT_EQ(States(plan.get()), std::vector<int>{0});
}

TEST_F(Layers, ADetachedGroupWaitsAsideAndADeletedOneAnswersNothing) {
    Handle drawing = NewDrawing();
    Lists lists(drawing.get());
    Handle plan(ILayerGroups_Add(lists.groups.get(), TVAPIC_TEXT("Plan")));
    ILayerGroup_SetCurrent(plan.get(), 1);
    EXPECT_TRUE(ILayerGroups_Detach(lists.groups.get(), plan.get()));
    EXPECT_FALSE(ILayerGroup_IsCurrent(plan.get()));
    EXPECT_EQ(ILayerGroups_GetItemByName(lists.groups.get(), TVAPIC_TEXT("Plan")), nullptr);
    EXPECT_TRUE(ILayerGroups_Attach(lists.groups.get(), plan.get()));
    EXPECT_FALSE(ILayerGroups_Attach(lists.groups.get(), plan.get()));
    EXPECT_TRUE(Same(plan.get(), Handle(ILayerGroups_GetItem(lists.groups.get(), 1))));

    EXPECT_TRUE(ILayerGroup_Delete(plan.get()));
    EXPECT_EQ(ILayerGroups_GetItem(lists.groups.get(), 1), nullptr);
    EXPECT_EQ(ILayerGroup_GetLayers(plan.get()), nullptr);
}

TEST_F(Layers, LayersAndGroupsComeBackFromTheFileAsSaved) {
    Text path = PathTo("layers.tvd");
    {
        Handle drawing = NewDrawing();
        Lists lists(drawing.get());
        Handle walls(ILayers_Add(lists.layers.get(), TVAPIC_TEXT("Walls")));
        ILayer_SetColor(walls.get(), 0xFF8000);
        ILayer_SetComment(walls.get(), TVAPIC_TEXT("outer"));
        ILayer_SetCurrent(walls.get(), 1);
        Handle plan(ILayerGroups_Add(lists.groups.get(), TVAPIC_TEXT("Plan")));
        ILayers_Attach(Handle(ILayerGroup_GetLayers(plan.get())).get(), walls.get());
        ILayerGroup_SetCurrent(plan.get(), 1);
        ASSERT_TRUE(ITavraDocument_SaveAs(drawing.get(), path.c_str()));
        ILayer_SetVisible(walls.get(), 0);  // a change to a layer is a change to the drawing
        EXPECT_TRUE(ITavraDocument_IsChanged(drawing.get()));
        ITavraDocument_Close(drawing.get(), 0);
    }
    Handle opened(IDocuments_Open(documents(), path.c_str(), 1, 0));
    Lists lists(opened.get());
    Handle walls(ILayers_GetLayerByNumber(lists.layers.get(), 1));
    EXPECT_EQ(Take(ILayer_GetComment(walls.get())), TVAPIC_TEXT("outer"));
    EXPECT_EQ(ILayer_GetColor(walls.get()), 0xFF8000);
    EXPECT_TRUE(ILayer_IsCurrent(walls.get()) && ILayer_IsVisible(walls.get()));
    Handle plan(ILayerGroups_GetItemByName(lists.groups.get(), TVAPIC_TEXT("Plan")));
    EXPECT_TRUE(ILayerGroup_IsCurrent(plan.get()));
    EXPECT_TRUE(Same(walls.get(), Handle(ILayers_GetLayer(Handle(ILayerGroup_GetLayers(plan.get())).get(), 0))));
}

}  // namespace
}  // namespace sim_test
