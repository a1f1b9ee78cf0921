#include "sim/support/geometry.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>

namespace tvsim {

void Box::Add(Point p) {
    if (empty_) {
        x1_ = x2_ = p.x;
        y1_ = y2_ = p.y;
        empty_ = false;
        return;
    }
    x1_ = std::min(x1_, p.x);
    y1_ = std::min(y1_, p.y);
    x2_ = std::max(x2_, p.x);
    y2_ = std::max(y2_, p.y);
}

void Box::Add(const Box& other) {
    if (other.empty_) return;
    Add(Point{other.x1_, other.y1_});
    Add(Point{other.x2_, other.y2_});
}

bool Box::Contains(Point p) const {
    return !empty_ && p.x >= x1_ && p.x <= x2_ && p.y >= y1_ && p.y <= y2_;
}

Box Box::Between(Point a, Point b) {
    Box box;
    box.Add(a);
    box.Add(b);
    return box;
}

namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

// Exact values at the quarter turns, so that rotating by 90 degrees keeps
// whole coordinates whole.
void CosSin(double angle, double& c, double& s) {
    double turn = NormalizeDegrees(angle);
    if (turn == 0.0) c = 1, s = 0;
    else if (turn == 90.0) c = 0, s = 1;
    else if (turn == 180.0) c = -1, s = 0;
    else if (turn == 270.0) c = 0, s = -1;
    else c = std::cos(turn * kRadiansPerDegree), s = std::sin(turn * kRadiansPerDegree);
}

}  // namespace

std::optional<Placement> Placement::Make(double x, double y, double angle, double scale_x, double scale_y) {
    if (!AllFinite({x, y, angle, scale_x, scale_y}) || scale_x == 0.0 || scale_y == 0.0) return std::nullopt;
    double c, s;
    CosSin(angle, c, s);
    Placement p;
    p.a_ = c * scale_x;
    p.b_ = s * scale_x;
    p.c_ = -s * scale_y;
    p.d_ = c * scale_y;
    p.tx_ = x;
    p.ty_ = y;
    double det = p.a_ * p.d_ - p.b_ * p.c_;
    p.ia_ = p.d_ / det;
    p.ib_ = -p.b_ / det;
    p.ic_ = -p.c_ / det;
    p.id_ = p.a_ / det;
    p.uniform_scale_ = std::fabs(scale_x) == std::fabs(scale_y) ? std::fabs(scale_x) : 0.0;
    return p;
}

Point Placement::ToOuter(Point q) const { return {a_ * q.x + c_ * q.y + tx_, b_ * q.x + d_ * q.y + ty_}; }

Point Placement::ToLocal(Point p) const {
    double dx = p.x - tx_, dy = p.y - ty_;
    return {ia_ * dx + ic_ * dy, ib_ * dx + id_ * dy};
}

double Placement::AngleToOuter(double angle) const {
    double c, s;
    CosSin(angle, c, s);
    return DirectionDegrees(a_ * c + c_ * s, b_ * c + d_ * s);
}

double Placement::AngleToLocal(double angle) const {
    double c, s;
    CosSin(angle, c, s);
    return DirectionDegrees(ia_ * c + ic_ * s, ib_ * c + id_ * s);
}

bool Placement::LengthToOuter(double& length) const {
    if (uniform_scale_ == 0.0) return false;
    length *= uniform_scale_;
    return true;
}

bool Placement::LengthToLocal(double& length) const {
    if (uniform_scale_ == 0.0) return false;
    length /= uniform_scale_;
    return true;
}

double NormalizeDegrees(double angle) {
    double turn = std::fmod(angle, 360.0);
    if (turn < 0.0) turn += 360.0;
    return turn >= 360.0 ? 0.0 : turn;  // -tiny + 360 rounds to 360
}

// Exact along the axes, as CosSin is at the quarter turns.
double DirectionDegrees(double dx, double dy) {
    if (dy == 0.0) return dx < 0.0 ? 180.0 : 0.0;
    if (dx == 0.0) return dy > 0.0 ? 90.0 : 270.0;
    return NormalizeDegrees(std::atan2(dy, dx) / kRadiansPerDegree);
}

Point Rotate(Point p, Point centre, double angle) {
    double c, s;
    CosSin(angle, c, s);
    double dx = p.x - centre.x, dy = p.y - centre.y;
    return {centre.x + c * dx - s * dy, centre.y + s * dx + c * dy};
}

double Distance(Point a, Point b) { return std::hypot(b.x - a.x, b.y - a.y); }

double DistanceToSegment(Point p, Point a, Point b) {
    double dx = b.x - a.x, dy = b.y - a.y;
    double squared = dx * dx + dy * dy;
    if (squared == 0.0) return Distance(p, a);
    double t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / squared, 0.0, 1.0);
    return Distance(p, Point{a.x + t * dx, a.y + t * dy});
}

bool SegmentTouchesBox(Point a, Point b, const Box& box) {
    if (box.IsEmpty()) return false;
    // Liang-Barsky clipping: the parameter range left inside every edge.
    double t0 = 0.0, t1 = 1.0;
    double dx = b.x - a.x, dy = b.y - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - box.X1(), box.X2() - a.x, a.y - box.Y1(), box.Y2() - a.y};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0) return false;
            continue;
        }
        double t = q[i] / p[i];
        if (p[i] < 0.0) t0 = std::max(t0, t);
        else t1 = std::min(t1, t);
        if (t0 > t1) return false;
    }
    return true;
}

bool AllFinite(std::initializer_list<double> values) {
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

}  // namespace tvsim
