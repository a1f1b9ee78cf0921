// The faces of a drawing's views and layers: the manager that leads to
// both, and the views collection. Both refer back to the drawing until it
// goes.
#pragma once

#include "sim/defaults_application.h"
#include "sim/defaults_drawing.h"

namespace tvsim {

class DrawingDocument;

class ViewsAndLayersManager final : public Object, public Default<tvapi::IViewsAndLayersManager> {
public:
    explicit ViewsAndLayersManager(DrawingDocument& document);

    tvapi::SmartPtr<tvapi::IViews> GetViews() override;
    tvapi::SmartPtr<tvapi::ILayerGroups> GetLayerGroups() override;

    void Disconnect() { document_ = nullptr; }

private:
    DrawingDocument* document_;
};

class Views final : public Object, public Default<tvapi::IViews> {
public:
    explicit Views(DrawingDocument& document);

    tvapi::SmartPtr<tvapi::IView> GetView(int index) override;
    tvapi::SmartPtr<tvapi::IView> GetViewByName(const tvapi::WString& name) override;
    tvapi::SmartPtr<tvapi::IView> GetViewByNumber(int number) override;
    tvapi::SmartPtr<tvapi::IView> Add(tvapi::tvViewTypeEnum viewType) override;
    tvapi::SmartPtr<tvapi::IView> GetActiveView() override;
    bool AddStandartViews(const tvapi::WString& modelFileName, const tvapi::WString& loadCombinationName, double x,
                          double y, double scale, double gapX, double gapY) override;

    void Disconnect() { document_ = nullptr; }

private:
    DrawingDocument* document_;
};

}  // namespace tvsim
