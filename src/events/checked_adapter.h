// The handler that checked mode (check/check.h) hands the host instead of
// the plain adapter: the same call, inside a scope that names the
// registration (so that handles lent by the call are known by it), and a
// count of the copies the host keeps, so that a registration the host still
// holds at exit is listed and one it dropped is not. It is two pointers and
// not trivially copyable, so the host's std::function keeps it on the heap;
// only checked mode pays for that.
#pragma once

#include <utility>

#include "check/check.h"
#include "events/adapter.h"

namespace tvapic::events {

template <class Signature>
class CheckedAdapter;

template <class R, class... A>
class CheckedAdapter<R(A...)> {
public:
    using Callback = typename Adapter<R(A...)>::Callback;

    // Takes over the registration's first copy.
    CheckedAdapter(Callback callback, check::Registration* registration)
        : adapter_(callback), registration_(registration) {}
    CheckedAdapter(const CheckedAdapter& o) : adapter_(o.adapter_), registration_(o.registration_) {
        check::HandlerCopied(registration_);
    }
    CheckedAdapter(CheckedAdapter&& o) noexcept
        : adapter_(o.adapter_), registration_(std::exchange(o.registration_, nullptr)) {}
    CheckedAdapter& operator=(const CheckedAdapter&) = delete;
    ~CheckedAdapter() { check::HandlerDropped(registration_); }

    R operator()(A... host) const {
        check::HandlerScope scope(registration_);
        return adapter_(host...);
    }

private:
    Adapter<R(A...)> adapter_;
    check::Registration* registration_;
};

// The host handler for a registration that checked mode follows.
template <class Handler, class CallbackType>
Handler MakeCheckedHandler(CallbackType callback, check::Registration* registration) {
    return Handler(CheckedAdapter<typename HandlerSignature<Handler>::type>(callback, registration));
}

}  // namespace tvapic::events
