// Result conversion: the host's result as the caller receives it.
#pragma once

#include <type_traits>
#include <utility>
#include <vector>

#include "containers/convert.h"
#include "core/text.h"
#include "tvapi/core.h"
#include "tvapi/values.h"

namespace tvapic::frame {

template <class R, class CR, class = void>
struct Result;

// Scalars as they are; a truth value is returned as one byte.
template <class R, class CR>
struct Result<R, CR, std::enable_if_t<std::is_arithmetic_v<R> || std::is_enum_v<R>>> {
    static CR From(R r) { return static_cast<CR>(r); }
};

// Text: a fresh caller-owned copy, never null once the host was reached.
template <class CR>
struct Result<tvapi::WString, CR> {
    static CR From(const tvapi::WString& r) { return core::CopyText(r); }
};

// An object: one more reference for the caller before the host's owning
// pointer lets its own go. The pointer is returned as the host produced it.
template <class I, class CR>
struct Result<tvapi::SmartPtr<I>, CR> {
    static CR From(const tvapi::SmartPtr<I>& r) {
        I* p = r.get();
        if (p) p->AddRef();
        return p;
    }
};

// A list: a new C vector that belongs to the caller.
template <class X, class CV>
struct Result<std::vector<X>, CV*> {
    static CV* From(const std::vector<X>& r) { return containers::NewVector<CV>(r); }
};

// A single property, attribute or storage value never reaches the caller.
template <class V, class H>
struct Result<V, H*, std::enable_if_t<std::is_same_v<V, tvapi::PropertyValue> ||
                                      std::is_same_v<V, tvapi::AttributeValue> ||
                                      std::is_same_v<V, tvapi::StorageValue>>> {
    static H* From(const V&) { return nullptr; }
};

}  // namespace tvapic::frame
