#include "sim/model/drawing/drawing_document.h"

#include <algorithm>
#include <unordered_set>

#include "sim/model/drawing/drawing_object.h"
#include "sim/model/drawing/line_segment.h"
#include "sim/model/drawing/view.h"
#include "sim/model/drawing/views.h"
#include "sim/model/enums.h"
#include "sim/support/text.h"

namespace tvsim {

DrawingDocument::DrawingDocument(Documents& owner, int type, bool visible, bool read_only)
    : Document(owner, type, visible, read_only), Default<tvapi::ITavraDocument2D>(this),
      layers_([this] { MarkChanged(); }, [this](int layer) { return ObjectsOnLayer(layer); }),
      variables_([this] { MarkChanged(); }) {
    Expose<tvapi::ITavraDocument2D>(this);
    manager_ = New<ViewsAndLayersManager>(*this);
    views_face_ = New<Views>(*this);
    layers_.Load(DocumentData());
    AddSheetView();
    SettleNew();
}

DrawingDocument::~DrawingDocument() { DisposeContent(); }

void DrawingDocument::DisposeContent() {
    for (auto& view : views_) view->Disconnect();
    views_.clear();
    active_view_ = nullptr;
    layers_.Dispose();
    variables_.Dispose();
    if (manager_) manager_->Disconnect();
    if (views_face_) views_face_->Disconnect();
    matrix_.reset();
    object_events_.Clear();
}

void DrawingDocument::AddSheetView() {
    ViewData sheet;
    sheet.number = 1;
    sheet.type = view_type::kSheet;
    sheet.name = TVAPI_TEXT("Sheet");
    active_view_ = AddView(sheet).get();
}

tvapi::SmartPtr<tvapi::IViewsAndLayersManager> DrawingDocument::GetViewsAndLayersManager() {
    return IsOpen() ? manager_.As<tvapi::IViewsAndLayersManager>() : tvapi::SmartPtr<tvapi::IViewsAndLayersManager>();
}

// Each subscriber key has its own events object, with its own filters.
tvapi::SmartPtr<tvapi::IAPIObject> DrawingDocument::GetObject2DEvents(const tvapi::WString& key) {
    return IsOpen() ? object_events_.For(key) : tvapi::SmartPtr<tvapi::IAPIObject>();
}

tvapi::SmartPtr<tvapi::IViews> DrawingDocument::ViewsFace() const { return views_face_.As<tvapi::IViews>(); }

View* DrawingDocument::ViewByNumber(int number) const {
    for (const auto& view : views_) {
        if (view->Number() == number) return view.get();
    }
    return nullptr;
}

void DrawingDocument::Activate(View& view) {
    if (active_view_ == &view) return;
    active_view_ = &view;
    MarkChanged();
}

Ref<View> DrawingDocument::AddView(ViewData data) {
    if (!IsOpen()) return {};
    if (data.number <= 0 || ViewByNumber(data.number)) {
        data.number = 1;
        for (const auto& view : views_) data.number = std::max(data.number, view->Number() + 1);
    }
    if (data.name.empty()) data.name = TVAPI_TEXT("View ") + Widen(std::to_string(data.number));
    auto view = New<View>(*this, data);
    views_.push_back(view);
    MarkChanged();
    return view;
}

void DrawingDocument::SetParametricMode(bool value) {
    parametric_ = value;
    MarkChanged();
}

void DrawingDocument::SetOrthogonalMode(bool value) {
    orthogonal_ = value;
    MarkChanged();
}

std::vector<DrawingObject*> DrawingDocument::AllObjects() const {
    std::vector<DrawingObject*> all;
    for (const auto& view : views_) {
        for (const auto& object : view->Objects()) all.push_back(object.get());
    }
    return all;
}

int DrawingDocument::ObjectsOnLayer(int layer) const {
    int count = 0;
    for (DrawingObject* object : AllObjects()) {
        if (object->GetLayerNumber() == layer) ++count;
    }
    return count;
}

Box DrawingDocument::ContentBounds() const {
    Box box;
    for (DrawingObject* object : AllObjects()) box.Add(object->Bounds());
    return box;
}

void DrawingDocument::SaveContent(DocumentData& data) const {
    data.parametric = parametric_;
    data.orthogonal = orthogonal_;
    layers_.Save(data);
    for (const auto& view : views_) data.views.push_back(view->ToData());
    data.current_view = active_view_ ? active_view_->Number() : 0;
    variables_.Save(data.variables);
}

// What does not hold together is left out: a segment on a layer the drawing
// lacks goes to the current layer, a repeated id gets a fresh one.
void DrawingDocument::LoadContent(const DocumentData& data) {
    for (auto& view : views_) view->Disconnect();
    views_.clear();
    active_view_ = nullptr;
    parametric_ = data.parametric;
    orthogonal_ = data.orthogonal;
    layers_.Load(data);
    next_id_ = 1;
    for (const auto& v : data.views) {
        for (const auto& s : v.segments) next_id_ = std::max(next_id_, s.common.id + 1);
    }
    std::unordered_set<std::uint64_t> seen;
    for (const auto& v : data.views) {
        if (!view_type::IsKnown(v.type)) continue;
        Ref<View> view = AddView(v);
        for (SegmentData s : v.segments) {
            if (!seen.insert(s.common.id).second) s.common.id = NextObjectId();
            if (!layers_.ByNumber(s.common.layer)) s.common.layer = layers_.Current();
            if (!link_type::IsKnown(s.common.link_type)) s.common.link_type = link_type::kNone;
            view->AddSegment(&s);
        }
    }
    if (views_.empty()) AddSheetView();
    active_view_ = ViewByNumber(data.current_view);
    if (!active_view_) active_view_ = views_.front().get();
    variables_.Load(data.variables);
}

}  // namespace tvsim
