// The call frame of every interface export.
//
//   Method<&I::Op, CResult>::Call(handle, args...)        queried interfaces
//   ApplicationMethod<&IApplication::Op, CResult>::Call    application-rooted
//   ServiceMethod<&ITransferService::Op, CResult>::Call    service-rooted
//
// Order of a call: default result; null handle -> done; query -> null: done;
// AddRef; convert arguments left to right; host call; convert the result;
// write back out-parameters and lists; free the conversions; Release.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "frame/args.h"
#include "frame/query.h"
#include "frame/results.h"
#include "tvapi/accessors.h"

namespace tvapic::frame {

// The converted arguments of one call, built strictly left to right (base
// classes are initialised in declaration order, unlike std::tuple's elements).
template <std::size_t N, class A>
struct ArgSlot {
    A arg;
};

template <class Indices, class... A>
struct ArgPack;

template <std::size_t... N, class... A>
struct ArgPack<std::index_sequence<N...>, A...> : ArgSlot<N, A>... {
    template <class... C>
    explicit ArgPack(C... c) : ArgSlot<N, A>{A(c)}... {}

    template <class Obj, class Fn>
    decltype(auto) Apply(Obj* self, Fn fn) {
        return (self->*fn)(static_cast<ArgSlot<N, A>&>(*this).arg.host()...);
    }

    void Finish() { (static_cast<ArgSlot<N, A>&>(*this).arg.finish(), ...); }
};

template <class CR, class Obj, class R, class... HP, class... CA>
CR Invoke(Obj* self, R (Obj::*fn)(HP...), CA... ca) {
    static_assert(sizeof...(HP) == sizeof...(CA), "export and host operation disagree on arity");
    ArgPack<std::index_sequence_for<HP...>, Arg<HP, CA>...> args(ca...);
    if constexpr (std::is_void_v<R>) {
        args.Apply(self, fn);
        args.Finish();
    } else {
        CR result = Result<R, CR>::From(args.Apply(self, fn));
        args.Finish();
        return result;
    }
}

template <class Fn>
struct MemberOf;
template <class Obj, class R, class... HP>
struct MemberOf<R (Obj::*)(HP...)> {
    using Class = Obj;
};

template <auto Fn, class CR>
struct Method {
    using I = typename MemberOf<decltype(Fn)>::Class;

    template <class... CA>
    static CR Call(void* handle, CA... ca) {
        if (!handle) return CR();
        I* iface = Query<I>(handle);
        if (!iface) return CR();
        HeldRef<I> held(iface);
        return Invoke<CR>(iface, Fn, ca...);
    }
};

// The application object is reached through the host accessor and called
// directly: it is not queried, referenced or released.
template <auto Fn, class CR>
struct ApplicationMethod {
    template <class... CA>
    static CR Call(CA... ca) {
        return Invoke<CR>(&tvapi::GetTavraApplication(), Fn, ca...);
    }
};

// The transfer service refuses a null object without calling the host.
template <auto Fn, class CR>
struct ServiceMethod {
    template <class... CA>
    static CR Call(CA... ca) {
        if constexpr (sizeof...(CA) > 0) {
            if (IsNullObject(ca...)) return CR();
        }
        return Invoke<CR>(&tvapi::GetTransferService(), Fn, ca...);
    }

private:
    template <class First, class... Rest>
    static bool IsNullObject(First first, Rest...) {
        if constexpr (std::is_same_v<First, void*>) return first == nullptr;
        else return false;
    }
};

}  // namespace tvapic::frame
