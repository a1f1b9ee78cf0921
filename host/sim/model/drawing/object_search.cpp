#include "sim/model/drawing/object_search.h"

#include "sim/model/drawing/drawing_object.h"
#include "sim/model/enums.h"

namespace tvsim {

ObjectList FacesOf(const std::vector<DrawingObject*>& objects) {
    ObjectList faces;
    for (DrawingObject* object : objects) faces.push_back(Share<tvapi::IDrawingObject>(object));
    return faces;
}

std::vector<DrawingObject*> ObjectsNear(const std::vector<DrawingObject*>& objects, Point p, double radius) {
    std::vector<DrawingObject*> near;
    if (!AllFinite({p.x, p.y, radius}) || radius < 0.0) return near;
    for (DrawingObject* object : objects) {
        if (object->DistanceTo(p) <= radius) near.push_back(object);
    }
    return near;
}

DrawingObject* NearestObject(const std::vector<DrawingObject*>& objects, Point p, double radius) {
    DrawingObject* nearest = nullptr;
    for (DrawingObject* object : ObjectsNear(objects, p, radius)) {
        if (!nearest || object->DistanceTo(p) < nearest->DistanceTo(p)) nearest = object;
    }
    return nearest;
}

std::vector<DrawingObject*> ObjectsInBox(const std::vector<DrawingObject*>& objects, int mode, Point a, Point b) {
    std::vector<DrawingObject*> selected;
    if (!AllFinite({a.x, a.y, b.x, b.y})) return selected;
    if (mode != select_mode::kWindow && mode != select_mode::kCrossing) return selected;
    Box box = Box::Between(a, b);
    for (DrawingObject* object : objects) {
        Box bounds = object->Bounds();
        bool inside = box.Contains({bounds.X1(), bounds.Y1()}) && box.Contains({bounds.X2(), bounds.Y2()});
        if (mode == select_mode::kWindow ? inside : object->Touches(box)) selected.push_back(object);
    }
    return selected;
}

}  // namespace tvsim
