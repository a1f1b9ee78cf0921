// The drawing's transformation matrix: a local coordinate system placed at
// (x, y), turned by an angle (degrees) and scaled along its own axes.
// "Into" the matrix maps drawing coordinates to local ones, "from" the
// matrix maps local coordinates back to the drawing.
#include "sim/model/drawing/drawing_document.h"
#include "sim/model/drawing/drawing_object.h"

namespace tvsim {

// Replaces any matrix before it; a zero or non-finite scale is refused.
bool DrawingDocument::CreateMatrix(double x, double y, double angle, double scaleX, double scaleY) {
    auto placement = Placement::Make(x, y, angle, scaleX, scaleY);
    if (!IsOpen() || !placement) return false;
    matrix_ = placement;
    return true;
}

bool DrawingDocument::DeleteMatrix() {
    if (!matrix_) return false;
    matrix_.reset();
    return true;
}

bool DrawingDocument::TransformPointIntoMatrix(double x, double y, double* resultX, double* resultY) {
    if (!matrix_ || !AllFinite({x, y})) return false;
    Point p = matrix_->ToLocal({x, y});
    *resultX = p.x;
    *resultY = p.y;
    return true;
}

bool DrawingDocument::TransformPointFromMatrix(double x, double y, double* resultX, double* resultY) {
    if (!matrix_ || !AllFinite({x, y})) return false;
    Point p = matrix_->ToOuter({x, y});
    *resultX = p.x;
    *resultY = p.y;
    return true;
}

// Lengths have one image only under a matrix that scales x and y alike.
bool DrawingDocument::TransformLengthIntoMatrix(double* length) {
    return matrix_ && AllFinite({*length}) && matrix_->LengthToLocal(*length);
}

bool DrawingDocument::TransformLengthFromMatrix(double* length) {
    return matrix_ && AllFinite({*length}) && matrix_->LengthToOuter(*length);
}

bool DrawingDocument::TransformAngleIntoMatrix(double* angle) {
    if (!matrix_ || !AllFinite({*angle})) return false;
    *angle = matrix_->AngleToLocal(*angle);
    return true;
}

bool DrawingDocument::TransformAngleFromMatrix(double* angle) {
    if (!matrix_ || !AllFinite({*angle})) return false;
    *angle = matrix_->AngleToOuter(*angle);
    return true;
}

// Objects drawn in the matrix's coordinates, moved to their place in the drawing.
bool DrawingDocument::TransformObjects(const ObjectList& objects) {
    auto resolved = Resolve(objects);
    if (!matrix_ || !resolved || resolved->empty()) return false;
    if (!object_events_.Raise(&DrawingObjectEventLists::BeginTransform, *resolved)) return false;
    for (DrawingObject* object : *resolved) object->Transform(*matrix_);
    object_events_.Raise(&DrawingObjectEventLists::Transform, *resolved, Notification(notify_type::kTransform));
    return true;
}

}  // namespace tvsim
