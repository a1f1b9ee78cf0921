// Registration of a C callback with a host object that takes handlers. Each
// generated registration export is one call of these templates:
//
//     Register<tvapi::IApplicationEvents>("IApplicationEvents_AddOpenDocumentHandler", events, key,
//                                         callback, &tvapi::IApplicationEvents::AddOpenDocumentHandler);
//
// The steps, in order: a null callback registers nothing, and the object is
// not even asked (the host would otherwise call address zero when the event
// fires); a null object registers nothing; the object is asked for the
// interface and, lacking it, registers nothing; the interface is held with
// one reference; the key becomes a host string (no key is the empty key);
// the callback is wrapped; the host receives the key by reference and the
// handler by value; then the key and the local handler go, and the
// reference is given back. Nothing is kept here: the host owns the
// registration from then on. Checked mode (check/check.h) hears of the null
// callback and object by the export's name, and follows the handler.
#pragma once

#include "check/check.h"
#include "events/adapter.h"
#include "events/checked_adapter.h"
#include "frame/frame.h"
#include "core/text.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace tvapic::events {

// False, having told checked mode, when there is nothing to register.
template <class Callback>
bool CanRegister(const char* export_name, void* object, Callback callback) {
    if (!callback) {
        if (check::On()) check::NullCallback(export_name);
        return false;
    }
    if (!object) {
        if (check::On()) check::Refused(export_name, nullptr, nullptr);
        return false;
    }
    return true;
}

template <class Handler, class Callback>
Handler Wrap(const char* export_name, Callback callback, const tvWChar* key, bool keyed) {
    if (check::On()) [[unlikely]] {
        return MakeCheckedHandler<Handler>(callback, check::Registered(export_name, key, keyed));
    }
    return MakeHandler<Handler>(callback);
}

// A keyed registration: the subscriber key names the group of handlers that
// the interface's RemoveAllHandlers(key) removes again.
template <class I, class Handler, class R, class Callback>
void Register(const char* export_name, void* object, const tvWChar* key, Callback callback,
              R (I::*add)(const tvapi::WString&, Handler)) {
    if (!CanRegister(export_name, object, callback)) return;
    frame::Target<I> self(object);
    if (!self) return frame::Refused<I, void>(export_name, object);
    const tvapi::WString host_key = core::ToHostText(key);
    Handler handler = Wrap<Handler>(export_name, callback, key, true);
    (self.operator->()->*add)(host_key, handler);
}

// An unkeyed registration.
template <class I, class Handler, class R, class Callback>
void Register(const char* export_name, void* object, Callback callback, R (I::*add)(Handler)) {
    if (!CanRegister(export_name, object, callback)) return;
    frame::Target<I> self(object);
    if (!self) return frame::Refused<I, void>(export_name, object);
    Handler handler = Wrap<Handler>(export_name, callback, nullptr, false);
    (self.operator->()->*add)(handler);
}

// A registration with a host object that is not an API object: it is neither
// asked for the interface nor referenced; the pointer is the interface.
template <class I, class Handler, class R, class Callback>
void RegisterUnqueried(const char* export_name, void* object, Callback callback, R (I::*add)(Handler)) {
    if (!CanRegister(export_name, object, callback)) return;
    I* self = static_cast<I*>(object);
    Handler handler = Wrap<Handler>(export_name, callback, nullptr, false);
    (self->*add)(handler);
}

}  // namespace tvapic::events
