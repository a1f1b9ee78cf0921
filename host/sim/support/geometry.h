// Plane geometry of the simulated drawing: points, bounding boxes and the
// affine placements behind view placement and the document's matrix.
// Angles are in degrees, counter-clockwise from the x axis.
#pragma once

#include <optional>

namespace tvsim {

struct Point {
    double x = 0.0, y = 0.0;
};

// An axis-aligned box that starts empty and grows to cover what is added.
class Box {
public:
    void Add(Point p);
    void Add(const Box& other);
    bool IsEmpty() const { return empty_; }
    bool Contains(Point p) const;
    double X1() const { return x1_; }
    double Y1() const { return y1_; }
    double X2() const { return x2_; }
    double Y2() const { return y2_; }

    // The box between two corners given in any order.
    static Box Between(Point a, Point b);

private:
    bool empty_ = true;
    double x1_ = 0.0, y1_ = 0.0, x2_ = 0.0, y2_ = 0.0;
};

// Scale (x and y separately), then rotation, then translation: maps a
// local coordinate system into the one it is placed in.
class Placement {
public:
    // Nothing for a zero or non-finite scale, which has no inverse.
    static std::optional<Placement> Make(double x, double y, double angle, double scale_x, double scale_y);

    Point ToOuter(Point local) const;
    Point ToLocal(Point outer) const;
    // Directions map through the linear part; results are in [0, 360).
    double AngleToOuter(double angle) const;
    double AngleToLocal(double angle) const;
    // Lengths have one image only under a uniform scale; false otherwise.
    bool LengthToOuter(double& length) const;
    bool LengthToLocal(double& length) const;

private:
    Placement() = default;
    // x' = a x + c y + tx, y' = b x + d y + ty, and its inverse.
    double a_ = 1, b_ = 0, c_ = 0, d_ = 1, tx_ = 0, ty_ = 0;
    double ia_ = 1, ib_ = 0, ic_ = 0, id_ = 1;
    double uniform_scale_ = 1;  // 0 when the scale is not uniform
};

double NormalizeDegrees(double angle);
double DirectionDegrees(double dx, double dy);
Point Rotate(Point p, Point centre, double angle);
double Distance(Point a, Point b);
double DistanceToSegment(Point p, Point a, Point b);
// True when the segment has a point inside or on the box.
bool SegmentTouchesBox(Point a, Point b, const Box& box);
bool AllFinite(std::initializer_list<double> values);

}  // namespace tvsim
