#include "sim/model/drawing/line_segment.h"

#include <cmath>

#include "sim/model/drawing/view.h"
#include "sim/model/enums.h"

namespace tvsim {

LineSegment::LineSegment(View& view, const SegmentData& data)
    : DrawingObject(view, data.common), Default<tvapi::ILineSegment>(this) {
    ExposePrimary<tvapi::ILineSegment>(this);
    Expose<tvapi::IDrawingObject>(this);
    angle_ = NormalizeDegrees(data.angle);
    SetEnds(data.start, data.end);
}

int LineSegment::Kind() const { return object_type::kLineSegment; }

void LineSegment::SetEnds(Point start, Point end) {
    start_ = start;
    end_ = end;
    length_ = Distance(start_, end_);
    if (length_ > 0.0) angle_ = DirectionDegrees(end_.x - start_.x, end_.y - start_.y);
}

// Coordinates that are not finite are refused: the segment stays as it was.
void LineSegment::SetX1(double value) {
    if (!AllFinite({value})) return;
    SetEnds({value, start_.y}, end_);
    Changed();
}

void LineSegment::SetY1(double value) {
    if (!AllFinite({value})) return;
    SetEnds({start_.x, value}, end_);
    Changed();
}

void LineSegment::SetX2(double value) {
    if (!AllFinite({value})) return;
    SetEnds(start_, {value, end_.y});
    Changed();
}

void LineSegment::SetY2(double value) {
    if (!AllFinite({value})) return;
    SetEnds(start_, {end_.x, value});
    Changed();
}

// A negative length has no meaning for a segment and is refused.
void LineSegment::SetLength(double value) {
    if (!AllFinite({value}) || value < 0.0) return;
    Point unit = tvsim::Rotate({1.0, 0.0}, {0.0, 0.0}, angle_);
    end_ = {start_.x + value * unit.x, start_.y + value * unit.y};
    length_ = value;
    Changed();
}

void LineSegment::SetAngle(double value) {
    if (!AllFinite({value})) return;
    angle_ = NormalizeDegrees(value);
    Point unit = tvsim::Rotate({1.0, 0.0}, {0.0, 0.0}, angle_);
    end_ = {start_.x + length_ * unit.x, start_.y + length_ * unit.y};
    Changed();
}

double LineSegment::DistanceTo(Point p) const { return DistanceToSegment(p, start_, end_); }

bool LineSegment::Touches(const Box& box) const { return SegmentTouchesBox(start_, end_, box); }

void LineSegment::Move(double dx, double dy) {
    start_ = {start_.x + dx, start_.y + dy};
    end_ = {end_.x + dx, end_.y + dy};
    Reshaped();
}

void LineSegment::Rotate(Point centre, double angle) {
    double length = length_;
    double turned = NormalizeDegrees(angle_ + angle);
    SetEnds(tvsim::Rotate(start_, centre, angle), tvsim::Rotate(end_, centre, angle));
    // The rotation's rounding must not change the length or the angle.
    length_ = length;
    angle_ = turned;
    Reshaped();
}

void LineSegment::Transform(const Placement& placement) {
    double angle = placement.AngleToOuter(angle_);
    SetEnds(placement.ToOuter(start_), placement.ToOuter(end_));
    if (length_ == 0.0) angle_ = angle;
    Reshaped();
}

Ref<DrawingObject> LineSegment::CopyInto(View& view, const DrawingObjectData& common) const {
    SegmentData data = ToData();
    data.common = common;
    return Ref<DrawingObject>(view.AddSegment(&data).get());
}

SegmentData LineSegment::ToData() const {
    SegmentData data;
    data.common = Common();
    data.start = start_;
    data.end = end_;
    data.angle = angle_;
    return data;
}

}  // namespace tvsim
