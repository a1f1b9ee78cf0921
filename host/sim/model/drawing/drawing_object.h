// What every drawing object of the simulated drawing shares: identity,
// layer, style, flags, hyperlink, validity and the view that holds it.
// Kinds (line segments so far) add their geometry.
#pragma once

#include <cstdint>

#include "sim/defaults_drawing.h"
#include "sim/support/document_data.h"
#include "sim/support/geometry.h"

namespace tvsim {

class DrawingDocument;
class View;

class DrawingObject : public Object, public Default<tvapi::IDrawingObject> {
public:
    tvapi::tvDrawingObjectTypeEnum GetDrawingObjectType() override;
    int GetLayerNumber() override { return common_.layer; }
    void SetLayerNumber(int value) override;
    bool IsTemp() override { return false; }
    bool IsValid() override { return view_ != nullptr; }
    bool Update() override { return IsValid(); }
    bool Delete() override;
    tvapi::tvDrawingObjectParamTypeEnum GetDrawingObjectParamType() override;
    void SetDrawingObjectParamType(tvapi::tvDrawingObjectParamTypeEnum value) override;
    bool IsTransparentBackground() override { return common_.transparent; }
    void SetTransparentBackground(bool value) override;
    bool IsAutoTransparentBackground() override { return common_.auto_transparent; }
    void SetAutoTransparentBackground(bool value) override;
    bool IsGeometryObject() override { return true; }
    bool IsAnnotativeObject() override { return false; }
    bool IsCurve() override { return true; }
    tvapi::WString GetHyperLinkParam(tvapi::tvHyperLinkTypeEnum* linkType) override;
    bool DeleteHyperLink() override;
    double GetId() override { return static_cast<double>(common_.id); }
    tvapi::tvLightObjectTypeEnum GetLightObjectType() override;
    void SetLightObjectType(tvapi::tvLightObjectTypeEnum value) override;
    int GetStyle() override { return common_.style; }
    void SetStyle(int value) override;
    tvapi::SmartPtr<tvapi::IView> GetView() override;

    // The model's side.
    virtual int Kind() const = 0;
    virtual Box Bounds() const = 0;
    virtual double DistanceTo(Point p) const = 0;
    virtual bool Touches(const Box& box) const = 0;
    virtual void Move(double dx, double dy) = 0;
    virtual void Rotate(Point centre, double angle) = 0;
    virtual void Transform(const Placement& placement) = 0;
    // A copy at the end of `view`, with `common` in place of this one's.
    virtual Ref<DrawingObject> CopyInto(View& view, const DrawingObjectData& common) const = 0;

    std::uint64_t Id() const { return common_.id; }
    const DrawingObjectData& Common() const { return common_; }
    View* Owner() const { return view_; }
    DrawingDocument* Document() const;
    // Shown: on a visible layer of a visible view.
    bool IsShown() const;
    int LinkType() const { return common_.link_type; }
    const tvapi::WString& Link() const { return common_.link; }
    void SetLink(int type, const tvapi::WString& reference);
    // Out of its view: no longer valid, and nothing refers back.
    void Disconnect() { view_ = nullptr; }

    // The one object these interface pointers stand for, when it is one of
    // the simulated drawing's objects.
    static DrawingObject* From(tvapi::IDrawingObject* face);

protected:
    DrawingObject(View& view, const DrawingObjectData& common);
    // A property changed: marks the owning document changed and tells the
    // drawing-object event subscribers.
    void Changed();
    // Moved, turned or transformed: marks the document changed; the drawing
    // operation that did it tells the subscribers once for all its objects.
    void Reshaped();

private:
    View* view_;
    DrawingObjectData common_;
};

}  // namespace tvsim
