// A drawing's layers and layer groups. Layers are numbered uniquely in the
// drawing; a layer group is a named selection of them. The LayerSet owns
// both; the faces (ILayer, ILayers, ILayerGroup, ILayerGroups) refer back
// to it until the document goes.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "sim/defaults_application.h"
#include "sim/support/document_data.h"

namespace tvsim {

class LayerGroup;
class LayerSet;
class Layers;
class LayerGroups;

class Layer final : public Object, public Default<tvapi::ILayer> {
public:
    Layer(LayerSet& set, const LayerData& data);

    int GetColor() override { return data_.color; }
    tvapi::WString GetComment() override { return data_.comment; }
    tvapi::WString GetName() override { return data_.name; }
    int GetObjectCount() override;
    bool IsBackground() override { return data_.background; }
    bool IsCurrent() override;
    bool IsPrintable() override { return data_.printable; }
    bool IsVisible() override { return data_.visible; }
    void SetBackground(bool value) override;
    void SetColor(int value) override;
    void SetComment(const tvapi::WString& value) override;
    void SetCurrent(bool value) override;
    void SetName(const tvapi::WString& value) override;
    void SetPrintable(bool value) override;
    void SetVisible(bool value) override;

    int Number() const { return data_.number; }
    const tvapi::WString& Name() const { return data_.name; }
    bool Shown() const { return data_.visible; }
    const LayerData& Data() const { return data_; }
    LayerSet* Set() const { return set_; }
    void Disconnect() { set_ = nullptr; }

private:
    void Changed();
    LayerSet* set_;
    LayerData data_;
};

// Every layer of the drawing (no group), or the members of one group.
class Layers final : public Object, public Default<tvapi::ILayers> {
public:
    Layers(LayerSet& set, LayerGroup* group);

    tvapi::SmartPtr<tvapi::ILayer> Add(const tvapi::WString& name) override;
    bool Attach(const tvapi::SmartPtr<tvapi::ILayer>& layer) override;
    bool Detach(const tvapi::SmartPtr<tvapi::ILayer>& layer) override;
    tvapi::SmartPtr<tvapi::ILayer> GetLayer(int index) override;
    tvapi::SmartPtr<tvapi::ILayer> GetLayerByName(const tvapi::WString& name) override;
    tvapi::SmartPtr<tvapi::ILayer> GetLayerByNumber(int number) override;

    void Disconnect() { set_ = nullptr; }

private:
    std::vector<Layer*> Listed() const;
    Layer* Ours(const tvapi::SmartPtr<tvapi::ILayer>& layer) const;

    LayerSet* set_;
    LayerGroup* group_;
};

class LayerGroup final : public Object, public Default<tvapi::ILayerGroup> {
public:
    LayerGroup(LayerSet& set, const LayerGroupData& data, std::uint64_t id);
    ~LayerGroup() override;

    bool Delete() override;
    std::vector<bool> GetLayerStates() override;
    tvapi::SmartPtr<tvapi::ILayers> GetLayers() override;
    tvapi::WString GetName() override { return name_; }
    std::uint64_t GetUniqueId() override { return id_; }
    bool IsCurrent() override;
    void SetCurrent(bool value) override;
    void SetLayerStates(const std::vector<bool>& value) override;
    void SetName(const tvapi::WString& value) override;

    const tvapi::WString& Name() const { return name_; }
    std::vector<int>& Members() { return members_; }
    LayerSet* Set() const { return set_; }
    LayerGroupData ToData() const { return {name_, members_}; }
    void Disconnect();

private:
    LayerSet* set_;
    tvapi::WString name_;
    std::uint64_t id_;
    std::vector<int> members_;  // layer numbers
    Ref<Layers> layers_;
};

class LayerGroups final : public Object, public Default<tvapi::ILayerGroups> {
public:
    explicit LayerGroups(LayerSet& set);

    tvapi::SmartPtr<tvapi::ILayerGroup> Add(const tvapi::WString& name) override;
    bool Attach(const tvapi::SmartPtr<tvapi::ILayerGroup>& group) override;
    bool Detach(const tvapi::SmartPtr<tvapi::ILayerGroup>& group) override;
    tvapi::SmartPtr<tvapi::ILayerGroup> GetItem(int index) override;
    tvapi::SmartPtr<tvapi::ILayerGroup> GetItemByName(const tvapi::WString& name) override;

    void Disconnect() { set_ = nullptr; }

private:
    LayerSet* set_;
};

class LayerSet {
public:
    // What the layers ask of their drawing: `changed` marks it changed,
    // `objects_on` counts its objects on a layer.
    LayerSet(std::function<void()> changed, std::function<int(int layer)> objects_on);
    ~LayerSet();
    LayerSet(const LayerSet&) = delete;
    LayerSet& operator=(const LayerSet&) = delete;

    // Replaces everything with the data's layers and groups; a drawing
    // without layers gets layer 0, "Main", in one group, "Layers".
    void Load(const DocumentData& data);
    void Save(DocumentData& data) const;
    // The document is going: every face lets go of it.
    void Dispose();

    const std::vector<Ref<Layer>>& All() const { return layers_; }
    Layer* ByNumber(int number) const;
    Layer* ByName(const tvapi::WString& name) const;
    // A new layer with the next free number; nothing for an empty or taken name.
    Ref<Layer> Add(const tvapi::WString& name);
    int Current() const { return current_; }
    void SetCurrent(int number);

    const std::vector<Ref<LayerGroup>>& Groups() const { return groups_; }
    LayerGroup* CurrentGroup() const { return current_group_; }
    void SetCurrentGroup(LayerGroup* group);
    Ref<LayerGroup> AddGroup(const tvapi::WString& name);
    // A detached group is kept aside, out of the list, until attached again.
    bool DetachGroup(LayerGroup& group);
    bool AttachGroup(LayerGroup& group);
    void DeleteGroup(LayerGroup& group);

    int ObjectCount(int layer) const;
    tvapi::SmartPtr<tvapi::ILayers> TableFace() const { return table_.As<tvapi::ILayers>(); }
    tvapi::SmartPtr<tvapi::ILayerGroups> GroupsFace() const { return groups_face_.As<tvapi::ILayerGroups>(); }
    void Changed();

private:
    void Clear();

    std::function<void()> changed_;
    std::function<int(int layer)> objects_on_;
    std::vector<Ref<Layer>> layers_;
    int current_ = 0;
    std::vector<Ref<LayerGroup>> groups_;
    std::vector<Ref<LayerGroup>> detached_;
    LayerGroup* current_group_ = nullptr;
    std::uint64_t next_group_id_ = 1;
    Ref<Layers> table_;
    Ref<LayerGroups> groups_face_;
};

}  // namespace tvsim
