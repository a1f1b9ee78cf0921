#include "sim/model/drawing/gabarit_object.h"

namespace tvsim {

GabaritObject::GabaritObject(const Box& box) : Default<tvapi::IGabaritObject>(this), box_(box) {
    ExposePrimary<tvapi::IGabaritObject>(this);
}

bool GabaritObject::AddGabarit(double x1, double y1, double x2, double y2) {
    if (!AllFinite({x1, y1, x2, y2})) return false;
    box_.Add(Box::Between({x1, y1}, {x2, y2}));
    return true;
}

// False while the box is empty, leaving the coordinates as they were.
bool GabaritObject::GetCurrentGabarit(double* x1, double* y1, double* x2, double* y2) {
    if (box_.IsEmpty()) return false;
    *x1 = box_.X1();
    *y1 = box_.Y1();
    *x2 = box_.X2();
    *y2 = box_.Y2();
    return true;
}

}  // namespace tvsim
