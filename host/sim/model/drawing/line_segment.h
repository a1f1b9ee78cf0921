// A line segment: two end points, with its length and angle (degrees) kept
// consistent. Setting the length moves the end point along the angle;
// setting the angle turns the segment about its start point.
#pragma once

#include "sim/model/drawing/drawing_object.h"

namespace tvsim {

class LineSegment final : public DrawingObject, public Default<tvapi::ILineSegment> {
public:
    LineSegment(View& view, const SegmentData& data);

    void SetX1(double value) override;
    double GetX1() override { return start_.x; }
    void SetY1(double value) override;
    double GetY1() override { return start_.y; }
    void SetX2(double value) override;
    double GetX2() override { return end_.x; }
    void SetY2(double value) override;
    double GetY2() override { return end_.y; }
    void SetLength(double value) override;
    double GetLength() override { return length_; }
    void SetAngle(double value) override;
    double GetAngle() override { return angle_; }

    int Kind() const override;
    Box Bounds() const override { return Box::Between(start_, end_); }
    double DistanceTo(Point p) const override;
    bool Touches(const Box& box) const override;
    void Move(double dx, double dy) override;
    void Rotate(Point centre, double angle) override;
    void Transform(const Placement& placement) override;
    Ref<DrawingObject> CopyInto(View& view, const DrawingObjectData& common) const override;

    SegmentData ToData() const;

private:
    // New end points; the length and angle follow from them.
    void SetEnds(Point start, Point end);

    Point start_, end_;
    double length_ = 0.0;
    double angle_ = 0.0;  // kept as set, and kept when the length goes to zero
};

}  // namespace tvsim
