// A view of a drawing: its placement on the sheet and the drawing objects
// it holds, in drawing order. It answers IView and IDrawingContainer; its
// ILineSegments collection lists and adds its line segments.
#pragma once

#include <vector>

#include "sim/defaults_drawing.h"
#include "sim/model/drawing/object_search.h"
#include "sim/support/document_data.h"
#include "sim/support/geometry.h"

namespace tvsim {

class DrawingDocument;
class DrawingObject;
class LineSegment;
class LineSegments;

class View final : public Object, public Default<tvapi::IView>, public Default<tvapi::IDrawingContainer> {
public:
    View(DrawingDocument& document, const ViewData& data);
    ~View() override;

    // IView
    tvapi::SmartPtr<tvapi::IDrawingObject> FindObject(double x, double y, double radius,
                                                      const tvapi::SmartPtr<tvapi::IFindObjectParameters>&) override;
    ObjectList FindObjects(double x, double y, double radius,
                           const tvapi::SmartPtr<tvapi::IFindObjectParameters>&) override;
    double GetAngle() override { return data_.angle; }
    int GetColor() override { return data_.color; }
    tvapi::WString GetComment() override { return data_.comment; }
    tvapi::SmartPtr<tvapi::ILayers> GetLayers() override;
    tvapi::WString GetName() override { return data_.name; }
    int GetNumber() override { return data_.number; }
    int GetObjectCount() override { return static_cast<int>(objects_.size()); }
    double GetScale() override { return data_.scale; }
    tvapi::tvViewTypeEnum GetViewType() override { return static_cast<tvapi::tvViewTypeEnum>(data_.type); }
    double GetX() override { return data_.x; }
    double GetY() override { return data_.y; }
    bool IsBackground() override { return data_.background; }
    bool IsCurrent() override;
    bool IsPrintable() override { return data_.printable; }
    bool IsVisible() override { return data_.visible; }
    ObjectList SelectObjects(tvapi::tvSelectObjectsModeEnum mode, double x1, double y1, double x2,
                             double y2) override;
    void SetAngle(double value) override;
    void SetBackground(bool value) override;
    void SetColor(int value) override;
    void SetComment(const tvapi::WString& value) override;
    void SetCurrent(bool value) override;
    void SetName(const tvapi::WString& value) override;
    void SetNumber(int value) override;
    void SetPrintable(bool value) override;
    void SetScale(double value) override;
    void SetVisible(bool value) override;
    void SetX(double value) override;
    void SetY(double value) override;
    bool TransformAngleFromSheet(double* angle) override;
    bool TransformAngleToSheet(double* angle) override;
    bool TransformPointFromSheet(double x, double y, double* resultX, double* resultY) override;
    bool TransformPointToSheet(double x, double y, double* resultX, double* resultY) override;

    // IDrawingContainer
    ObjectList GetObjects() override;
    tvapi::SmartPtr<tvapi::ILineSegments> GetLineSegments() override;

    // The model's side.
    DrawingDocument* Document() const { return document_; }
    int Number() const { return data_.number; }
    const tvapi::WString& Name() const { return data_.name; }
    bool Shown() const { return data_.visible; }
    const std::vector<Ref<DrawingObject>>& Objects() const { return objects_; }
    std::vector<LineSegment*> Segments() const;
    // A new segment at the end of the drawing order; a fresh id and the
    // current layer unless `from` brings its own.
    Ref<LineSegment> AddSegment(const SegmentData* from = nullptr);
    // Takes the object out of the view; it is no longer valid.
    void Remove(DrawingObject& object);
    // Replaces the drawing order with a permutation of the same objects.
    void Reorder(std::vector<Ref<DrawingObject>> order);
    ViewData ToData() const;
    // The document is going: every object becomes invalid.
    void Disconnect();

private:
    void Changed();
    std::vector<DrawingObject*> Plain() const;

    DrawingDocument* document_;
    ViewData data_;  // its segments list stays empty: the objects are the truth
    std::vector<Ref<DrawingObject>> objects_;
    Ref<LineSegments> line_segments_;
};

// A view's line segments, by index among them, and new ones at the end.
class LineSegments final : public Object, public Default<tvapi::ILineSegments> {
public:
    explicit LineSegments(View& view);

    tvapi::SmartPtr<tvapi::ILineSegment> GetLineSegment(int index) override;
    tvapi::SmartPtr<tvapi::ILineSegment> Add() override;

    void Disconnect() { view_ = nullptr; }

private:
    View* view_;
};

}  // namespace tvsim
