// Everything a generated export wrapper uses: the target of the call, the
// argument conversions and the result conversions.
//
// A wrapper reads:
//     Target<tvapi::IArcSlot> self(handle, "IArcSlot_GetPoint");   // query, AddRef
//     if (!self) return {};                     // null or foreign handle: default
//     Arg<int, int> a0(index);                  // arguments, left to right
//     Arg<double*, double*> a1(x);
//     bool r = Result<bool, bool>::From(self->GetPoint(a0.host(), a1.host()));
//     a1.finish();                              // out-parameters written back
//     return Returned<bool>("IArcSlot_GetPoint", r);   // conversions freed, then Release
#pragma once

#include "check/check.h"
#include "core/query.h"
#include "frame/args.h"
#include "frame/checked.h"
#include "frame/results.h"
#include "tvapi/accessors.h"

namespace tvapic::frame {

// The interface a handle-taking export works on: asked for by IID text and
// held with one reference until the wrapper returns. Null when the handle is
// null or the object lacks the interface; then nothing is called, and checked
// mode hears of it under the export's name.
template <class I>
class Target {
public:
    Target(void* handle, const char* export_name) : p_(handle ? core::Query<I>(handle) : nullptr) {
        if (p_) {
            p_->AddRef();
        } else if (check::On()) {
            check::Refused(export_name, handle, tvapi::IAPIObjectIID<I>::text);
        }
    }
    // Runs in a no-throw context: a host that throws from Release ends the process.
    ~Target() {
        if (p_) p_->Release();
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    explicit operator bool() const { return p_ != nullptr; }
    I* operator->() const { return p_; }

private:
    I* p_;
};

}  // namespace tvapic::frame
