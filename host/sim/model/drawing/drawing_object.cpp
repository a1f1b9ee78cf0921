#include "sim/model/drawing/drawing_object.h"

#include "sim/model/drawing/drawing_document.h"
#include "sim/model/drawing/layers.h"
#include "sim/model/drawing/view.h"
#include "sim/model/enums.h"

namespace tvsim {

DrawingObject::DrawingObject(View& view, const DrawingObjectData& common)
    : Default<tvapi::IDrawingObject>(this), view_(&view), common_(common) {}

DrawingObject* DrawingObject::From(tvapi::IDrawingObject* face) { return dynamic_cast<DrawingObject*>(face); }

DrawingDocument* DrawingObject::Document() const { return view_ ? view_->Document() : nullptr; }

void DrawingObject::Reshaped() {
    if (DrawingDocument* document = Document()) document->MarkChanged();
}

void DrawingObject::Changed() {
    DrawingDocument* document = Document();
    if (!document) return;
    document->MarkChanged();
    document->ObjectEvents().Raise(&DrawingObjectEventLists::PropertyChanged, {this},
                                     Notification(notify_type::kPropertyChanged));
}

tvapi::tvDrawingObjectTypeEnum DrawingObject::GetDrawingObjectType() {
    return static_cast<tvapi::tvDrawingObjectTypeEnum>(Kind());
}

// Only the document's layers take objects.
void DrawingObject::SetLayerNumber(int value) {
    DrawingDocument* document = Document();
    if (!document || !document->AllLayers().ByNumber(value)) return;
    common_.layer = value;
    Changed();
}

// Subscribers may refuse the deletion; they hear of it once it is done.
bool DrawingObject::Delete() {
    DrawingDocument* document = Document();
    if (!document) return false;
    if (!document->ObjectEvents().Raise(&DrawingObjectEventLists::BeginDelete, {this})) return false;
    view_->Remove(*this);  // the view's reference goes; the caller's keeps this alive
    document->ObjectEvents().Raise(&DrawingObjectEventLists::Delete, {this}, Notification(notify_type::kDelete));
    return true;
}

tvapi::tvDrawingObjectParamTypeEnum DrawingObject::GetDrawingObjectParamType() {
    return static_cast<tvapi::tvDrawingObjectParamTypeEnum>(common_.param_type);
}

void DrawingObject::SetDrawingObjectParamType(tvapi::tvDrawingObjectParamTypeEnum value) {
    common_.param_type = value;
    Changed();
}

void DrawingObject::SetTransparentBackground(bool value) {
    common_.transparent = value;
    Changed();
}

void DrawingObject::SetAutoTransparentBackground(bool value) {
    common_.auto_transparent = value;
    Changed();
}

tvapi::WString DrawingObject::GetHyperLinkParam(tvapi::tvHyperLinkTypeEnum* linkType) {
    *linkType = static_cast<tvapi::tvHyperLinkTypeEnum>(common_.link_type);
    return common_.link;
}

bool DrawingObject::DeleteHyperLink() {
    if (!view_ || common_.link_type == link_type::kNone) return false;
    SetLink(link_type::kNone, {});
    return true;
}

void DrawingObject::SetLink(int type, const tvapi::WString& reference) {
    common_.link_type = type;
    common_.link = type == link_type::kNone ? tvapi::WString() : reference;
    Changed();
}

tvapi::tvLightObjectTypeEnum DrawingObject::GetLightObjectType() {
    return static_cast<tvapi::tvLightObjectTypeEnum>(common_.light_type);
}

void DrawingObject::SetLightObjectType(tvapi::tvLightObjectTypeEnum value) {
    common_.light_type = value;
    Changed();
}

void DrawingObject::SetStyle(int value) {
    common_.style = value;
    Changed();
}

tvapi::SmartPtr<tvapi::IView> DrawingObject::GetView() { return Share<tvapi::IView>(view_); }

bool DrawingObject::IsShown() const {
    DrawingDocument* document = Document();
    if (!document || !view_->Shown()) return false;
    Layer* layer = document->AllLayers().ByNumber(common_.layer);
    return layer && layer->Shown();
}

}  // namespace tvsim
