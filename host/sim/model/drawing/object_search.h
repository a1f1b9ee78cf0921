// Finding and selecting drawing objects by place, shared by the drawing
// (every view) and each view (its own objects).
#pragma once

#include <vector>

#include "sim/support/geometry.h"
#include "tvapi/drawing.h"

namespace tvsim {

class DrawingObject;

// Drawing objects as the host passes and returns them.
using ObjectList = std::vector<tvapi::SmartPtr<tvapi::IDrawingObject>>;
ObjectList FacesOf(const std::vector<DrawingObject*>& objects);

// Objects within `radius` of `p`, in the given order; none for a negative
// or non-finite search.
std::vector<DrawingObject*> ObjectsNear(const std::vector<DrawingObject*>& objects, Point p, double radius);
// The nearest of them, or null.
DrawingObject* NearestObject(const std::vector<DrawingObject*>& objects, Point p, double radius);
// Selection by box: mode 0 (window) takes objects wholly inside, 1
// (crossing) objects with any point inside; other modes take nothing.
std::vector<DrawingObject*> ObjectsInBox(const std::vector<DrawingObject*>& objects, int mode, Point a, Point b);

}  // namespace tvsim
