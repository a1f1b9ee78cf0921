// Everything a generated export wrapper uses: the target of the call, the
// argument conversions and the result conversions.
//
// A wrapper reads:
//     Target<tvapi::IArcSlot> self(handle);     // query, AddRef
//     if (!self) return Refused<tvapi::IArcSlot, bool>("IArcSlot_GetPoint", handle);   // default
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
// null or the object lacks the interface; then nothing is called (Refused).
template <class I>
class Target {
public:
    // The pointer comes back by value, so the target stays in a register and
    // the path that refused a handle needs no Release.
    explicit Target(void* handle) : p_(Acquire(handle)) {}
    // Runs in a no-throw context: a host that throws from Release ends the process.
    [[gnu::always_inline]] ~Target() {
        if (p_) p_->Release();
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    explicit operator bool() const { return p_ != nullptr; }
    I* operator->() const { return p_; }

private:
    [[gnu::noinline]] static I* Acquire(void* handle) {
        I* p = handle ? core::Query<I>(handle) : nullptr;
        if (p) p->AddRef();
        return p;
    }

    I* p_;
};

// The default of an export whose handle is null or lacks I, checked mode told.
// The export's name reaches the code only here and after the host's call, so
// that no call keeps it in a register while checking is off.
template <class I, class R>
R Refused(const char* export_name, void* handle) {
    if (check::On()) check::Refused(export_name, handle, tvapi::IAPIObjectIID<I>::text);
    return R();
}

}  // namespace tvapic::frame
