#include "hand_calls.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "tvapi/application.h"
#include "tvapi/drawing.h"

namespace bench::hand {
namespace {

template <class I>
I* Query(void* handle) {
    char iid[37];
    std::memcpy(iid, tvapi::IAPIObjectIID<I>::text, sizeof iid);
    return static_cast<I*>(static_cast<tvapi::IAPIObject*>(handle)->QueryInterface(iid));
}

}  // namespace

int GetLayerNumber(void* drawing) {
    auto* p = Query<tvapi::IDrawingObject>(drawing);
    if (!p) return 0;
    p->AddRef();
    int layer = p->GetLayerNumber();
    p->Release();
    return layer;
}

tvWChar* GetName(void* document) {
    auto* p = Query<tvapi::ITavraDocument>(document);
    if (!p) return nullptr;
    p->AddRef();
    tvapi::WString name = p->GetName();
    auto* copy = static_cast<tvWChar*>(std::malloc((name.size() + 1) * sizeof(tvWChar)));
    std::memcpy(copy, name.data(), name.size() * sizeof(tvWChar));
    copy[name.size()] = 0;
    p->Release();
    return copy;
}

void* GetCurve2D(void* drawing) {
    auto* p = Query<tvapi::IDrawingObject>(drawing);
    if (!p) return nullptr;
    p->AddRef();
    void* curve = nullptr;
    {
        tvapi::SmartPtr<tvapi::ICurve2D> owned = p->GetCurve2D();
        if (owned) owned->AddRef();  // the caller's reference
        curve = owned.get();
    }
    p->Release();
    return curve;
}

bool PointOn(void* curve, double t, double* x, double* y) {
    auto* p = Query<tvapi::ICurve2D>(curve);
    if (!p) return false;
    p->AddRef();
    bool on = p->PointOn(t, x, y);
    p->Release();
    return on;
}

DoubleVector_t* CalculatePolygon(void* curve, double tolerance) {
    auto* p = Query<tvapi::ICurve2D>(curve);
    if (!p) return nullptr;
    p->AddRef();
    DoubleVector_t* out;
    {
        std::vector<double> points = p->CalculatePolygon(tolerance);
        out = new DoubleVector_t{points.size(), static_cast<double*>(std::malloc(points.size() * sizeof(double)))};
        std::memcpy(out->data, points.data(), points.size() * sizeof(double));
    }
    p->Release();
    return out;
}

}  // namespace bench::hand
