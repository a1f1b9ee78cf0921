// Host values as short texts, so that a recorded call can be compared with
// what a test expected the host to receive: 7, 2.5, true, "t0", obj3, null,
// &1.5, [1,2], pv:7.
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "tvapi/core.h"
#include "tvapi/values.h"

namespace tvprobe {

template <class T>
struct IsSmartPtr : std::false_type {};
template <class I>
struct IsSmartPtr<tvapi::SmartPtr<I>> : std::true_type {};

template <class T>
struct IsVector : std::false_type {};
template <class X>
struct IsVector<std::vector<X>> : std::true_type {};

// "obj<id>" for a face of a probe object, "foreign" for anything else.
std::string DescribeObject(const void* face);
std::string Narrow(const tvapi::WString& text);

template <class T>
std::string Describe(const T& value) {
    using U = std::remove_cvref_t<T>;
    if constexpr (std::is_same_v<U, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_integral_v<U> && sizeof(U) == 1) {
        return std::to_string(static_cast<int>(value));
    } else if constexpr (std::is_arithmetic_v<U>) {
        std::ostringstream out;
        out << value;
        return out.str();
    } else if constexpr (std::is_enum_v<U>) {
        return std::to_string(static_cast<long long>(value));
    } else if constexpr (std::is_same_v<U, tvapi::WString>) {
        return '"' + Narrow(value) + '"';
    } else if constexpr (IsSmartPtr<U>::value) {
        return value ? DescribeObject(value.get()) : "null";
    } else if constexpr (std::is_pointer_v<U>) {
        using P = std::remove_cv_t<std::remove_pointer_t<U>>;
        if (!value) return "null";
        if constexpr (std::is_void_v<P> || (std::is_class_v<P> && !IsSmartPtr<P>::value)) return DescribeObject(value);
        else return "&" + Describe(*value);
    } else if constexpr (IsVector<U>::value) {
        std::string out = "[";
        for (std::size_t i = 0; i < value.size(); ++i) out += (i ? "," : "") + Describe(static_cast<typename U::value_type>(value[i]));
        return out + "]";
    } else if constexpr (std::is_same_v<U, tvapi::PropertyValue>) {
        return "pv:" + Narrow(value.ToString());
    } else if constexpr (std::is_same_v<U, tvapi::AttributeValue>) {
        return "av:" + Narrow(value.Text());
    } else {
        return "sv:" + Narrow(value.Text());
    }
}

}  // namespace tvprobe
