// A bounding box handed to the caller: the area of some views' objects,
// which the caller may grow.
#pragma once

#include "sim/defaults_drawing.h"
#include "sim/support/geometry.h"

namespace tvsim {

class GabaritObject final : public Object, public Default<tvapi::IGabaritObject> {
public:
    explicit GabaritObject(const Box& box);

    bool AddGabarit(double x1, double y1, double x2, double y2) override;
    bool GetCurrentGabarit(double* x1, double* y1, double* x2, double* y2) override;

private:
    Box box_;
};

}  // namespace tvsim
