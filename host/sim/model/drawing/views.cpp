#include "sim/model/drawing/views.h"

#include "sim/model/drawing/drawing_document.h"
#include "sim/model/drawing/layers.h"
#include "sim/model/drawing/view.h"
#include "sim/model/enums.h"
#include "sim/support/geometry.h"
#include "sim/support/text.h"

namespace tvsim {

ViewsAndLayersManager::ViewsAndLayersManager(DrawingDocument& document)
    : Default<tvapi::IViewsAndLayersManager>(this), document_(&document) {
    ExposePrimary<tvapi::IViewsAndLayersManager>(this);
}

tvapi::SmartPtr<tvapi::IViews> ViewsAndLayersManager::GetViews() {
    return document_ ? document_->ViewsFace() : tvapi::SmartPtr<tvapi::IViews>();
}

tvapi::SmartPtr<tvapi::ILayerGroups> ViewsAndLayersManager::GetLayerGroups() {
    return document_ ? document_->AllLayers().GroupsFace() : tvapi::SmartPtr<tvapi::ILayerGroups>();
}

Views::Views(DrawingDocument& document) : Default<tvapi::IViews>(this), document_(&document) {
    ExposePrimary<tvapi::IViews>(this);
}

tvapi::SmartPtr<tvapi::IView> Views::GetView(int index) {
    if (!document_ || index < 0 || index >= static_cast<int>(document_->AllViews().size())) return {};
    return document_->AllViews()[static_cast<std::size_t>(index)].As<tvapi::IView>();
}

tvapi::SmartPtr<tvapi::IView> Views::GetViewByName(const tvapi::WString& name) {
    if (!document_) return {};
    for (const auto& view : document_->AllViews()) {
        if (view->Name() == name) return view.As<tvapi::IView>();
    }
    return {};
}

tvapi::SmartPtr<tvapi::IView> Views::GetViewByNumber(int number) {
    return document_ ? Share<tvapi::IView>(document_->ViewByNumber(number)) : tvapi::SmartPtr<tvapi::IView>();
}

// A drawing has one sheet view, made with it: Add makes the other kinds.
tvapi::SmartPtr<tvapi::IView> Views::Add(tvapi::tvViewTypeEnum viewType) {
    if (!document_ || !view_type::IsKnown(viewType) || viewType == view_type::kSheet) return {};
    ViewData data;
    data.type = viewType;
    return document_->AddView(data).As<tvapi::IView>();
}

tvapi::SmartPtr<tvapi::IView> Views::GetActiveView() {
    return document_ ? Share<tvapi::IView>(document_->ActiveView()) : tvapi::SmartPtr<tvapi::IView>();
}

// Three projection views of the model, empty (the simulated host has no
// three-dimensional geometry): front at (x, y), top above it and left to its
// right, the gaps apart. The model's file must exist.
bool Views::AddStandartViews(const tvapi::WString& modelFileName, const tvapi::WString& loadCombinationName,
                             double x, double y, double scale, double gapX, double gapY) {
    if (!document_ || !AllFinite({x, y, scale, gapX, gapY}) || scale <= 0.0 || !IsFile(modelFileName)) return false;
    tvapi::WString source = modelFileName;
    if (!loadCombinationName.empty()) source += TVAPI_TEXT(" (") + loadCombinationName + TVAPI_TEXT(")");
    struct Placed {
        const tvapi::WChar* name;
        double x, y;
    };
    const Placed placed[] = {{TVAPI_TEXT("Front"), x, y}, {TVAPI_TEXT("Top"), x, y + gapY}, {TVAPI_TEXT("Left"), x + gapX, y}};
    for (const auto& p : placed) {
        ViewData data;
        data.type = view_type::kProjection;
        data.name = p.name;
        data.comment = source;
        data.x = p.x;
        data.y = p.y;
        data.scale = scale;
        document_->AddView(data);
    }
    return true;
}

}  // namespace tvsim
