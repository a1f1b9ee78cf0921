// Registration of a C callback with a host object that takes handlers. Each
// generated registration export is one call of these templates:
//
//     Register<tvapi::IApplicationEvents>(events, key, callback,
//                                         &tvapi::IApplicationEvents::AddOpenDocumentHandler);
//
// The steps, in order: a null object registers nothing; the object is asked
// for the interface and, lacking it, registers nothing; the interface is held
// with one reference; the key becomes a host string (no key is the empty
// key); the callback, null or not, is wrapped; the host receives the key by
// reference and the handler by value; then the key and the local handler
// go, and the reference is given back. Nothing is kept here: the host owns
// the registration from then on.
#pragma once

#include "events/adapter.h"
#include "frame/frame.h"
#include "core/text.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace tvapic::events {

// A keyed registration: the subscriber key names the group of handlers that
// the interface's RemoveAllHandlers(key) removes again.
template <class I, class Handler, class R, class Callback>
void Register(void* object, const tvWChar* key, Callback callback, R (I::*add)(const tvapi::WString&, Handler)) {
    if (!object) return;
    frame::Target<I> self(object);
    if (!self) return;
    const tvapi::WString host_key = core::ToHostText(key);
    Handler handler = MakeHandler<Handler>(callback);
    (self.operator->()->*add)(host_key, handler);
}

// An unkeyed registration.
template <class I, class Handler, class R, class Callback>
void Register(void* object, Callback callback, R (I::*add)(Handler)) {
    if (!object) return;
    frame::Target<I> self(object);
    if (!self) return;
    Handler handler = MakeHandler<Handler>(callback);
    (self.operator->()->*add)(handler);
}

// A registration with a host object that is not an API object: it is neither
// asked for the interface nor referenced; the pointer is the interface.
template <class I, class Handler, class R, class Callback>
void RegisterUnqueried(void* object, Callback callback, R (I::*add)(Handler)) {
    if (!object) return;
    I* self = static_cast<I*>(object);
    Handler handler = MakeHandler<Handler>(callback);
    (self->*add)(handler);
}

}  // namespace tvapic::events
