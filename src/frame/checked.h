// What checked mode learns from an export (check/check.h): whether its
// handle was refused (Refused, frame.h, on the path that returns the
// default) and, after the call, what it handed out. While checking is off, Returned is the
// one test an export adds to its path, never taken.
#pragma once

#include <type_traits>
#include <vector>

#include "check/check.h"
#include "check/families.h"
#include "containers/convert.h"
#include "tvapi/core.h"

namespace tvapic::frame {

template <class Host>
struct ListElement {
    using type = void;
};
template <class X>
struct ListElement<std::vector<X>> {
    using type = X;
};

template <class P>
struct Pointee;
template <class I>
struct Pointee<tvapi::SmartPtr<I>> {
    using type = I;
};

// The result as checked mode records it: references on objects and on the
// elements of object lists, vectors by family, anything else as a call.
template <class Host, class C>
void Observe(const char* export_name, C r) {
    using Element = typename ListElement<Host>::type;
    if constexpr (containers::IsSmartPtr<Host>::value) {
        check::ObjectHandedOut(export_name, r, tvapi::IAPIObjectIID<typename Pointee<Host>::type>::text);
    } else if constexpr (containers::IsSmartPtr<Element>::value) {
        check::ObjectsHandedOut(export_name, r, tvapi::IAPIObjectIID<typename Pointee<Element>::type>::text);
    } else if constexpr (containers::IsObjectList<Element>::value) {
        using Inner = typename Element::value_type;
        check::ObjectListsHandedOut(export_name, r, tvapi::IAPIObjectIID<typename Pointee<Inner>::type>::text);
    } else if constexpr (std::is_pointer_v<C> && check::kFamily<std::remove_pointer_t<C>> != nullptr) {
        check::VectorHandedOut(export_name, r, check::kFamily<std::remove_pointer_t<C>>);
    } else {
        check::Called(export_name);
    }
}

// An export's result on its way to the caller.
template <class Host, class C>
inline C Returned(const char* export_name, C r) {
    if (check::On()) [[unlikely]] Observe<Host>(export_name, r);
    return r;
}

inline void Returned(const char* export_name) {
    if (check::On()) [[unlikely]] check::Called(export_name);
}

// The default of an export whose object argument was null (the transfer
// service's, which are not queried).
template <class R>
R NullArgument(const char* export_name) {
    if (check::On()) check::NullArgument(export_name);
    return R();
}

}  // namespace tvapic::frame
