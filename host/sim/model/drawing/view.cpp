#include "sim/model/drawing/view.h"

#include <algorithm>

#include "sim/model/drawing/drawing_document.h"
#include "sim/model/drawing/layers.h"
#include "sim/model/drawing/line_segment.h"
#include "sim/model/drawing/object_search.h"
#include "sim/model/enums.h"

namespace tvsim {

View::View(DrawingDocument& document, const ViewData& data)
    : Default<tvapi::IView>(this), Default<tvapi::IDrawingContainer>(this), document_(&document), data_(data) {
    data_.segments.clear();
    ExposePrimary<tvapi::IView>(this);
    Expose<tvapi::IDrawingContainer>(this);
    line_segments_ = New<LineSegments>(*this);
}

View::~View() { Disconnect(); }

void View::Disconnect() {
    for (auto& object : objects_) object->Disconnect();
    objects_.clear();
    if (line_segments_) line_segments_->Disconnect();
    document_ = nullptr;
}

void View::Changed() {
    if (document_) document_->MarkChanged();
}

std::vector<DrawingObject*> View::Plain() const {
    std::vector<DrawingObject*> plain;
    for (const auto& object : objects_) plain.push_back(object.get());
    return plain;
}

// The search parameters (disabled objects and views) are not modelled.
tvapi::SmartPtr<tvapi::IDrawingObject> View::FindObject(double x, double y, double radius,
                                                        const tvapi::SmartPtr<tvapi::IFindObjectParameters>&) {
    return Share<tvapi::IDrawingObject>(NearestObject(Plain(), {x, y}, radius));
}

ObjectList View::FindObjects(double x, double y, double radius,
                             const tvapi::SmartPtr<tvapi::IFindObjectParameters>&) {
    return FacesOf(ObjectsNear(Plain(), {x, y}, radius));
}

ObjectList View::SelectObjects(tvapi::tvSelectObjectsModeEnum mode, double x1, double y1, double x2, double y2) {
    return FacesOf(ObjectsInBox(Plain(), mode, {x1, y1}, {x2, y2}));
}

tvapi::SmartPtr<tvapi::ILayers> View::GetLayers() {
    return document_ ? document_->AllLayers().TableFace() : tvapi::SmartPtr<tvapi::ILayers>();
}

bool View::IsCurrent() { return document_ && document_->ActiveView() == this; }

// A drawing always has one current view: it changes by making another one
// current, never by unsetting it.
void View::SetCurrent(bool value) {
    if (value && document_) document_->Activate(*this);
}

void View::SetAngle(double value) {
    if (!AllFinite({value})) return;
    data_.angle = NormalizeDegrees(value);
    Changed();
}

void View::SetBackground(bool value) {
    data_.background = value;
    Changed();
}

void View::SetColor(int value) {
    data_.color = value;
    Changed();
}

void View::SetComment(const tvapi::WString& value) {
    data_.comment = value;
    Changed();
}

void View::SetName(const tvapi::WString& value) {
    data_.name = value;
    Changed();
}

// View numbers are unique in a drawing; a number in use is refused.
void View::SetNumber(int value) {
    if (!document_ || value == data_.number || document_->ViewByNumber(value)) return;
    data_.number = value;
    Changed();
}

void View::SetPrintable(bool value) {
    data_.printable = value;
    Changed();
}

void View::SetScale(double value) {
    if (!AllFinite({value}) || value <= 0.0) return;
    data_.scale = value;
    Changed();
}

void View::SetVisible(bool value) {
    data_.visible = value;
    Changed();
}

void View::SetX(double value) {
    if (!AllFinite({value})) return;
    data_.x = value;
    Changed();
}

void View::SetY(double value) {
    if (!AllFinite({value})) return;
    data_.y = value;
    Changed();
}

// The view's coordinates are placed on the sheet at (x, y), turned by its
// angle and scaled by its scale.
namespace {
std::optional<Placement> OnSheet(const ViewData& v) { return Placement::Make(v.x, v.y, v.angle, v.scale, v.scale); }
}  // namespace

bool View::TransformPointToSheet(double x, double y, double* resultX, double* resultY) {
    auto placement = OnSheet(data_);
    if (!placement || !AllFinite({x, y})) return false;
    Point p = placement->ToOuter({x, y});
    *resultX = p.x;
    *resultY = p.y;
    return true;
}

bool View::TransformPointFromSheet(double x, double y, double* resultX, double* resultY) {
    auto placement = OnSheet(data_);
    if (!placement || !AllFinite({x, y})) return false;
    Point p = placement->ToLocal({x, y});
    *resultX = p.x;
    *resultY = p.y;
    return true;
}

bool View::TransformAngleToSheet(double* angle) {
    auto placement = OnSheet(data_);
    if (!placement || !AllFinite({*angle})) return false;
    *angle = placement->AngleToOuter(*angle);
    return true;
}

bool View::TransformAngleFromSheet(double* angle) {
    auto placement = OnSheet(data_);
    if (!placement || !AllFinite({*angle})) return false;
    *angle = placement->AngleToLocal(*angle);
    return true;
}

ObjectList View::GetObjects() { return FacesOf(Plain()); }

tvapi::SmartPtr<tvapi::ILineSegments> View::GetLineSegments() {
    return document_ ? line_segments_.As<tvapi::ILineSegments>() : tvapi::SmartPtr<tvapi::ILineSegments>();
}

std::vector<LineSegment*> View::Segments() const {
    std::vector<LineSegment*> segments;
    for (const auto& object : objects_) {
        if (object->Kind() == object_type::kLineSegment) segments.push_back(static_cast<LineSegment*>(object.get()));
    }
    return segments;
}

Ref<LineSegment> View::AddSegment(const SegmentData* from) {
    if (!document_) return {};
    SegmentData data;
    if (from) {
        data = *from;
    } else {
        data.common.id = document_->NextObjectId();
        data.common.layer = document_->AllLayers().Current();
    }
    auto segment = New<LineSegment>(*this, data);
    objects_.push_back(Ref<DrawingObject>(segment.get()));
    Changed();
    return segment;
}

void View::Remove(DrawingObject& object) {
    auto it = std::find_if(objects_.begin(), objects_.end(), [&](const auto& o) { return o.get() == &object; });
    if (it == objects_.end()) return;
    Ref<DrawingObject> keep = *it;
    objects_.erase(it);
    object.Disconnect();
    Changed();
}

void View::Reorder(std::vector<Ref<DrawingObject>> order) {
    objects_ = std::move(order);
    Changed();
}

ViewData View::ToData() const {
    ViewData data = data_;
    for (LineSegment* segment : Segments()) data.segments.push_back(segment->ToData());
    return data;
}

LineSegments::LineSegments(View& view) : Default<tvapi::ILineSegments>(this), view_(&view) {
    ExposePrimary<tvapi::ILineSegments>(this);
}

tvapi::SmartPtr<tvapi::ILineSegment> LineSegments::GetLineSegment(int index) {
    if (!view_) return {};
    auto segments = view_->Segments();
    if (index < 0 || index >= static_cast<int>(segments.size())) return {};
    return Share<tvapi::ILineSegment>(segments[static_cast<std::size_t>(index)]);
}

tvapi::SmartPtr<tvapi::ILineSegment> LineSegments::Add() {
    if (!view_) return {};
    Ref<LineSegment> segment = view_->AddSegment();
    if (DrawingDocument* document = view_->Document(); document && segment) {
        document->ObjectEvents().Raise(&DrawingObjectEventLists::CreateObject, {segment.get()},
                                       Notification(notify_type::kCreate));
    }
    return segment.As<tvapi::ILineSegment>();
}

}  // namespace tvsim
