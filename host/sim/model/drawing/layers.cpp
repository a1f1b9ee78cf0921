#include "sim/model/drawing/layers.h"

#include <algorithm>
#include <utility>


namespace tvsim {

// ---- Layer ----

Layer::Layer(LayerSet& set, const LayerData& data) : Default<tvapi::ILayer>(this), set_(&set), data_(data) {
    ExposePrimary<tvapi::ILayer>(this);
}

void Layer::Changed() {
    if (set_) set_->Changed();
}

int Layer::GetObjectCount() { return set_ ? set_->ObjectCount(data_.number) : 0; }

bool Layer::IsCurrent() { return set_ && set_->Current() == data_.number; }

// New objects go on the current layer; it changes by making another current.
void Layer::SetCurrent(bool value) {
    if (value && set_) set_->SetCurrent(data_.number);
}

void Layer::SetBackground(bool value) {
    data_.background = value;
    Changed();
}

void Layer::SetColor(int value) {
    data_.color = value;
    Changed();
}

void Layer::SetComment(const tvapi::WString& value) {
    data_.comment = value;
    Changed();
}

// Layer names are unique in a drawing and never empty.
void Layer::SetName(const tvapi::WString& value) {
    if (value.empty() || value == data_.name || (set_ && set_->ByName(value))) return;
    data_.name = value;
    Changed();
}

void Layer::SetPrintable(bool value) {
    data_.printable = value;
    Changed();
}

void Layer::SetVisible(bool value) {
    data_.visible = value;
    Changed();
}

// ---- Layers ----

Layers::Layers(LayerSet& set, LayerGroup* group) : Default<tvapi::ILayers>(this), set_(&set), group_(group) {
    ExposePrimary<tvapi::ILayers>(this);
}

std::vector<Layer*> Layers::Listed() const {
    std::vector<Layer*> listed;
    if (!set_) return listed;
    if (!group_) {
        for (const auto& layer : set_->All()) listed.push_back(layer.get());
        return listed;
    }
    for (int number : group_->Members()) {
        if (Layer* layer = set_->ByNumber(number)) listed.push_back(layer);
    }
    return listed;
}

Layer* Layers::Ours(const tvapi::SmartPtr<tvapi::ILayer>& layer) const {
    auto* ours = dynamic_cast<Layer*>(layer.get());
    return ours && set_ && ours->Set() == set_ ? ours : nullptr;
}

// Added to the drawing, and to the group when the collection is a group's.
tvapi::SmartPtr<tvapi::ILayer> Layers::Add(const tvapi::WString& name) {
    if (!set_) return {};
    Ref<Layer> layer = set_->Add(name);
    if (layer && group_) group_->Members().push_back(layer->Number());
    return layer.As<tvapi::ILayer>();
}

// Only a group's collection takes layers in and out; the drawing's own list
// always holds every layer.
bool Layers::Attach(const tvapi::SmartPtr<tvapi::ILayer>& layer) {
    Layer* ours = Ours(layer);
    if (!ours || !group_) return false;
    auto& members = group_->Members();
    if (std::find(members.begin(), members.end(), ours->Number()) != members.end()) return false;
    members.push_back(ours->Number());
    set_->Changed();
    return true;
}

bool Layers::Detach(const tvapi::SmartPtr<tvapi::ILayer>& layer) {
    Layer* ours = Ours(layer);
    if (!ours || !group_) return false;
    auto& members = group_->Members();
    auto it = std::find(members.begin(), members.end(), ours->Number());
    if (it == members.end()) return false;
    members.erase(it);
    set_->Changed();
    return true;
}

tvapi::SmartPtr<tvapi::ILayer> Layers::GetLayer(int index) {
    auto listed = Listed();
    if (index < 0 || index >= static_cast<int>(listed.size())) return {};
    return Share<tvapi::ILayer>(listed[static_cast<std::size_t>(index)]);
}

tvapi::SmartPtr<tvapi::ILayer> Layers::GetLayerByName(const tvapi::WString& name) {
    for (Layer* layer : Listed()) {
        if (layer->Name() == name) return Share<tvapi::ILayer>(layer);
    }
    return {};
}

tvapi::SmartPtr<tvapi::ILayer> Layers::GetLayerByNumber(int number) {
    for (Layer* layer : Listed()) {
        if (layer->Number() == number) return Share<tvapi::ILayer>(layer);
    }
    return {};
}

// ---- LayerGroup ----

LayerGroup::LayerGroup(LayerSet& set, const LayerGroupData& data, std::uint64_t id)
    : Default<tvapi::ILayerGroup>(this), set_(&set), name_(data.name), id_(id), members_(data.layers) {
    ExposePrimary<tvapi::ILayerGroup>(this);
    layers_ = New<Layers>(set, this);
}

LayerGroup::~LayerGroup() { Disconnect(); }

void LayerGroup::Disconnect() {
    set_ = nullptr;
    if (layers_) layers_->Disconnect();
}

bool LayerGroup::Delete() {
    if (!set_) return false;
    set_->DeleteGroup(*this);
    return true;
}

// Visibility of the group's layers, in the group's order.
std::vector<bool> LayerGroup::GetLayerStates() {
    std::vector<bool> states;
    if (!set_) return states;
    for (int number : members_) {
        if (Layer* layer = set_->ByNumber(number)) states.push_back(layer->Shown());
    }
    return states;
}

// One state per layer of the group, or nothing changes.
void LayerGroup::SetLayerStates(const std::vector<bool>& value) {
    if (!set_ || value.size() != members_.size()) return;
    for (std::size_t i = 0; i < members_.size(); ++i) {
        if (Layer* layer = set_->ByNumber(members_[i])) layer->SetVisible(value[i]);
    }
}

tvapi::SmartPtr<tvapi::ILayers> LayerGroup::GetLayers() {
    return set_ ? layers_.As<tvapi::ILayers>() : tvapi::SmartPtr<tvapi::ILayers>();
}

bool LayerGroup::IsCurrent() { return set_ && set_->CurrentGroup() == this; }

void LayerGroup::SetCurrent(bool value) {
    if (!set_) return;
    if (value) set_->SetCurrentGroup(this);
    else if (IsCurrent()) set_->SetCurrentGroup(nullptr);
}

void LayerGroup::SetName(const tvapi::WString& value) {
    if (value.empty()) return;
    name_ = value;
    if (set_) set_->Changed();
}

// ---- LayerGroups ----

LayerGroups::LayerGroups(LayerSet& set) : Default<tvapi::ILayerGroups>(this), set_(&set) {
    ExposePrimary<tvapi::ILayerGroups>(this);
}

tvapi::SmartPtr<tvapi::ILayerGroup> LayerGroups::Add(const tvapi::WString& name) {
    return set_ ? set_->AddGroup(name).As<tvapi::ILayerGroup>() : tvapi::SmartPtr<tvapi::ILayerGroup>();
}

bool LayerGroups::Attach(const tvapi::SmartPtr<tvapi::ILayerGroup>& group) {
    auto* ours = dynamic_cast<LayerGroup*>(group.get());
    return set_ && ours && ours->Set() == set_ && set_->AttachGroup(*ours);
}

bool LayerGroups::Detach(const tvapi::SmartPtr<tvapi::ILayerGroup>& group) {
    auto* ours = dynamic_cast<LayerGroup*>(group.get());
    return set_ && ours && ours->Set() == set_ && set_->DetachGroup(*ours);
}

tvapi::SmartPtr<tvapi::ILayerGroup> LayerGroups::GetItem(int index) {
    if (!set_ || index < 0 || index >= static_cast<int>(set_->Groups().size())) return {};
    return set_->Groups()[static_cast<std::size_t>(index)].As<tvapi::ILayerGroup>();
}

tvapi::SmartPtr<tvapi::ILayerGroup> LayerGroups::GetItemByName(const tvapi::WString& name) {
    if (!set_) return {};
    for (const auto& group : set_->Groups()) {
        if (group->Name() == name) return group.As<tvapi::ILayerGroup>();
    }
    return {};
}

// ---- LayerSet ----

LayerSet::LayerSet(std::function<void()> changed, std::function<int(int layer)> objects_on)
    : changed_(std::move(changed)), objects_on_(std::move(objects_on)) {
    table_ = New<Layers>(*this, nullptr);
    groups_face_ = New<LayerGroups>(*this);
}

LayerSet::~LayerSet() { Dispose(); }

void LayerSet::Clear() {
    for (auto& layer : layers_) layer->Disconnect();
    for (auto& group : groups_) group->Disconnect();
    for (auto& group : detached_) group->Disconnect();
    layers_.clear();
    groups_.clear();
    detached_.clear();
    current_group_ = nullptr;
}

void LayerSet::Dispose() {
    Clear();
    if (table_) table_->Disconnect();
    if (groups_face_) groups_face_->Disconnect();
}

void LayerSet::Load(const DocumentData& data) {
    Clear();
    for (const auto& layer : data.layers) {
        if (!ByNumber(layer.number) && !layer.name.empty() && !ByName(layer.name)) {
            layers_.push_back(New<Layer>(*this, layer));
        }
    }
    if (layers_.empty()) layers_.push_back(New<Layer>(*this, LayerData{0, TVAPI_TEXT("Main"), {}, 0, true, true, false}));
    current_ = ByNumber(data.current_layer) ? data.current_layer : layers_.front()->Number();

    for (const auto& group : data.layer_groups) {
        LayerGroupData kept{group.name, {}};
        for (int number : group.layers) {
            bool known = ByNumber(number) != nullptr;
            bool repeated = std::find(kept.layers.begin(), kept.layers.end(), number) != kept.layers.end();
            if (known && !repeated) kept.layers.push_back(number);
        }
        groups_.push_back(New<LayerGroup>(*this, kept, next_group_id_++));
    }
    if (groups_.empty()) {
        LayerGroupData all{TVAPI_TEXT("Layers"), {}};
        for (const auto& layer : layers_) all.layers.push_back(layer->Number());
        groups_.push_back(New<LayerGroup>(*this, all, next_group_id_++));
    }
    int index = data.current_layer_group;
    current_group_ = index >= 0 && index < static_cast<int>(groups_.size()) ? groups_[index].get() : nullptr;
}

void LayerSet::Save(DocumentData& data) const {
    for (const auto& layer : layers_) data.layers.push_back(layer->Data());
    data.current_layer = current_;
    data.current_layer_group = -1;
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        data.layer_groups.push_back(groups_[i]->ToData());
        if (groups_[i].get() == current_group_) data.current_layer_group = static_cast<int>(i);
    }
}

Layer* LayerSet::ByNumber(int number) const {
    for (const auto& layer : layers_) {
        if (layer->Number() == number) return layer.get();
    }
    return nullptr;
}

Layer* LayerSet::ByName(const tvapi::WString& name) const {
    for (const auto& layer : layers_) {
        if (layer->Name() == name) return layer.get();
    }
    return nullptr;
}

Ref<Layer> LayerSet::Add(const tvapi::WString& name) {
    if (name.empty() || ByName(name)) return {};
    int number = 0;
    for (const auto& layer : layers_) number = std::max(number, layer->Number() + 1);
    LayerData data;
    data.number = number;
    data.name = name;
    auto layer = New<Layer>(*this, data);
    layers_.push_back(layer);
    Changed();
    return layer;
}

void LayerSet::SetCurrent(int number) {
    if (!ByNumber(number) || number == current_) return;
    current_ = number;
    Changed();
}

void LayerSet::SetCurrentGroup(LayerGroup* group) {
    current_group_ = group;
    Changed();
}

Ref<LayerGroup> LayerSet::AddGroup(const tvapi::WString& name) {
    if (name.empty()) return {};
    auto group = New<LayerGroup>(*this, LayerGroupData{name, {}}, next_group_id_++);
    groups_.push_back(group);
    Changed();
    return group;
}

namespace {
// Moves `group` from one list to the other; false when it is not in `from`.
bool MoveGroup(std::vector<Ref<LayerGroup>>& from, std::vector<Ref<LayerGroup>>& to, LayerGroup& group) {
    auto it = std::find_if(from.begin(), from.end(), [&](const auto& g) { return g.get() == &group; });
    if (it == from.end()) return false;
    to.push_back(*it);
    from.erase(it);
    return true;
}
}  // namespace

bool LayerSet::DetachGroup(LayerGroup& group) {
    if (!MoveGroup(groups_, detached_, group)) return false;
    if (current_group_ == &group) current_group_ = nullptr;
    Changed();
    return true;
}

bool LayerSet::AttachGroup(LayerGroup& group) {
    if (!MoveGroup(detached_, groups_, group)) return false;
    Changed();
    return true;
}

void LayerSet::DeleteGroup(LayerGroup& group) {
    Ref<LayerGroup> keep(&group);
    std::vector<Ref<LayerGroup>> gone;
    if (!MoveGroup(groups_, gone, group)) MoveGroup(detached_, gone, group);
    if (current_group_ == &group) current_group_ = nullptr;
    group.Disconnect();
    Changed();
}

int LayerSet::ObjectCount(int layer) const { return objects_on_(layer); }

void LayerSet::Changed() { changed_(); }

}  // namespace tvsim
