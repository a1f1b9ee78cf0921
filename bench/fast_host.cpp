#include "fast_host.h"

#include <cstring>
#include <vector>

#include "sim/defaults_application.h"
#include "sim/defaults_drawing.h"

namespace bench {
namespace {

class FastObject;

// Every face forwards references and queries to its object without the
// simulated host's map lookup: a query is a few fixed comparisons.
template <class I>
class Face : public tvsim::Default<I> {
public:
    explicit Face(FastObject* object);
    int AddRef() override;
    int Release() override;
    void* QueryInterface(const char* iid) override;
    FastObject* owner() const { return &object_; }

protected:
    FastObject& object_;
};

tvapi::WString Widen(const char* ascii) {
    tvapi::WString text;
    for (; *ascii; ++ascii) text += static_cast<tvapi::WChar>(*ascii);
    return text;
}

class DocumentFace final : public Face<tvapi::ITavraDocument> {
public:
    using Face::Face;
    // Longer than the string's inline buffer: the copy the host returns
    // allocates, as it does for most names.
    tvapi::WString GetName() override {
        static const tvapi::WString name = Widen("Benchmark document 01");
        return name;
    }
};

class DrawingFace final : public Face<tvapi::IDrawingObject> {
public:
    using Face::Face;
    int GetLayerNumber() override { return kLayerNumber; }
    tvapi::SmartPtr<tvapi::ICurve2D> GetCurve2D() override;
};

class CurveFace final : public Face<tvapi::ICurve2D> {
public:
    using Face::Face;
    bool PointOn(double, double* x, double* y) override {
        *x = kPointX;
        *y = kPointY;
        return true;
    }
    std::vector<double> CalculatePolygon(double) override {
        static const double points[kPolygonValues] = {0, 0, 1, 0, 2, 1, 3, 3, 4, 6, 5, 10, 6, 15, 7, 21};
        return std::vector<double>(points, points + kPolygonValues);
    }
};

bool SameIID(const char* iid, const char* known) { return std::memcmp(iid, known, 36) == 0; }

class FastObject final : public tvsim::Object {
public:
    int Ref() { return ++refs_; }
    int Unref() {
        int left = --refs_;
        if (left == 0) delete this;
        return left;
    }
    int refs() const { return refs_; }

    void* Find(const char* iid) {
        using tvapi::IAPIObjectIID;
        if (SameIID(iid, IAPIObjectIID<tvapi::IAPIObject>::text)) return Base();
        if (SameIID(iid, IAPIObjectIID<tvapi::IDrawingObject>::text)) return static_cast<tvapi::IDrawingObject*>(&drawing_);
        if (SameIID(iid, IAPIObjectIID<tvapi::ICurve2D>::text)) return static_cast<tvapi::ICurve2D*>(&curve_);
        if (SameIID(iid, IAPIObjectIID<tvapi::ITavraDocument>::text)) return static_cast<tvapi::ITavraDocument*>(&document_);
        return nullptr;
    }
    tvapi::IAPIObject* Base() { return static_cast<tvapi::IDrawingObject*>(&drawing_); }
    tvapi::ICurve2D* Curve() { return &curve_; }
    tvapi::ITavraDocument* Document() { return &document_; }

    static FastObject* Owning(void* handle) {
        // Every handle given out is the drawing face (the IAPIObject answer).
        auto* face = static_cast<DrawingFace*>(static_cast<tvapi::IDrawingObject*>(static_cast<tvapi::IAPIObject*>(handle)));
        return face->owner();
    }

private:
    int refs_ = 1;
    DocumentFace document_{this};
    DrawingFace drawing_{this};
    CurveFace curve_{this};
};

template <class I>
Face<I>::Face(FastObject* object) : tvsim::Default<I>(object), object_(*object) {}
template <class I>
int Face<I>::AddRef() {
    return object_.Ref();
}
template <class I>
int Face<I>::Release() {
    return object_.Unref();
}
template <class I>
void* Face<I>::QueryInterface(const char* iid) {
    return object_.Find(iid);
}

tvapi::SmartPtr<tvapi::ICurve2D> DrawingFace::GetCurve2D() { return tvapi::SmartPtr<tvapi::ICurve2D>(object_.Curve()); }

class FastApplication final : public tvsim::Default<tvapi::IApplication> {
public:
    explicit FastApplication(void* document) : document_(FastObject::Owning(document)) { document_->Ref(); }
    ~FastApplication() { document_->Unref(); }
    tvapi::SmartPtr<tvapi::ITavraDocument> GetActiveDocument() override {
        return tvapi::SmartPtr<tvapi::ITavraDocument>(document_->Document());
    }

private:
    FastObject* document_;
};

}  // namespace

void* NewFastObject() { return (new FastObject())->Base(); }

tvapi::IApplication* NewFastApplication(void* document) { return new FastApplication(document); }
void DeleteFastApplication(tvapi::IApplication* application) { delete static_cast<FastApplication*>(application); }

int ReferenceCount(void* handle) { return FastObject::Owning(handle)->refs(); }

}  // namespace bench
