// The callback adapter: a host handler that calls a C function pointer.
//
// Adapter<R(A...)> is the host's handler for every event whose host
// signature is R(A...): there is one adapter per signature, not per event.
// Its only state is the C function pointer, so it is trivially copyable and
// fits in the small-object storage of the host's std::function.
//
// A call converts the host's arguments left to right (CallbackArg), calls the
// C function, writes the in/out arguments back left to right, then converts
// the result: a non-zero int is true; an enumeration or an opaque pointer is
// handed back unchanged.
#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

#include "events/callback_args.h"

namespace tvapic::events {

template <class R, class = void>
struct CallbackResult;

template <>
struct CallbackResult<void> {
    using C = void;
};

template <>
struct CallbackResult<bool> {
    using C = int;
    static bool ToHost(int r) { return r != 0; }
};

template <class E>
struct CallbackResult<E, std::enable_if_t<std::is_enum_v<E>>> {
    using C = int;
    static E ToHost(int r) { return static_cast<E>(r); }
};

template <>
struct CallbackResult<void*> {
    using C = void*;
    static void* ToHost(void* r) { return r; }
};

// The converted arguments of one call. Base classes are built in the order
// they are listed, so the host's arguments are converted left to right.
template <std::size_t N, class A>
struct ConvertedSlot {
    CallbackArg<A> arg;
};

template <class Indices, class... A>
struct Converted;

template <std::size_t... N, class... A>
struct Converted<std::index_sequence<N...>, A...> : ConvertedSlot<N, A>... {
    explicit Converted(A... host) : ConvertedSlot<N, A>{CallbackArg<A>(host)}... {}

    template <class Callback>
    decltype(auto) Call(Callback callback) {
        return callback(static_cast<ConvertedSlot<N, A>&>(*this).arg.c()...);
    }
    void Finish() { (static_cast<ConvertedSlot<N, A>&>(*this).arg.finish(), ...); }
};

template <class Signature>
class Adapter;

template <class R, class... A>
class Adapter<R(A...)> {
public:
    using Callback = typename CallbackResult<R>::C (*)(typename CallbackArg<A>::C...);

    explicit Adapter(Callback callback) : callback_(callback) {}

    R operator()(A... host) const {
        Converted<std::index_sequence_for<A...>, A...> args(host...);
        if constexpr (std::is_void_v<R>) {
            args.Call(callback_);
            args.Finish();
        } else {
            auto r = args.Call(callback_);
            args.Finish();
            return CallbackResult<R>::ToHost(r);
        }
    }

private:
    Callback callback_;
};

template <class Handler>
struct HandlerSignature;

template <class Signature>
struct HandlerSignature<std::function<Signature>> {
    using type = Signature;
};

// The host handler of type Handler (a std::function) wrapping `callback`
// (never null: the registrations refuse a null callback).
template <class Handler, class CallbackType>
Handler MakeHandler(CallbackType callback) {
    using Wrapped = Adapter<typename HandlerSignature<Handler>::type>;
    static_assert(std::is_same_v<CallbackType, typename Wrapped::Callback>,
                  "the header's callback type disagrees with the host's handler type");
    static_assert(sizeof(Wrapped) == sizeof(void*) && std::is_trivially_copyable_v<Wrapped>,
                  "a wrapped handler is one function pointer");
    return Handler(Wrapped(callback));
}

}  // namespace tvapic::events
