// Base of the simulated host's objects: one reference count and the
// interfaces the object answers to by IID text.
#pragma once

#include <atomic>
#include <string>
#include <unordered_map>
#include <utility>

#include "tvapi/core.h"

namespace tvsim {

// Default<I> implements every operation of I with an empty answer; the
// generated specialisations live in sim/defaults_<group>.h.
template <class I>
class Default;

class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    int AddRef() { return ++refs_; }
    int Release() {
        int left = --refs_;
        if (left == 0) delete this;
        return left;
    }
    void* Query(const char* iid) const {
        auto it = faces_.find(iid);
        return it == faces_.end() ? nullptr : it->second;
    }

protected:
    virtual ~Object() = default;

    // Makes the object answer queries for I with `face`.
    template <class I>
    void Expose(I* face) {
        faces_[tvapi::IAPIObjectIID<I>::text] = face;
    }

    // Makes the object answer I, and IAPIObject with the same face: the
    // object's identity for handle comparison and for object vectors.
    template <class I>
    void ExposePrimary(I* face) {
        Expose<I>(face);
        faces_[tvapi::IAPIObjectIID<tvapi::IAPIObject>::text] = static_cast<tvapi::IAPIObject*>(face);
    }

private:
    std::atomic<int> refs_{0};
    std::unordered_map<std::string, void*> faces_;
};

// An owning pointer to a simulated object's own class (SmartPtr needs an
// interface; these classes answer several, so AddRef is reached through
// Object).
template <class T>
class Ref {
public:
    Ref() = default;
    explicit Ref(T* p) : p_(p) {
        if (p_) static_cast<Object*>(p_)->AddRef();
    }
    Ref(const Ref& o) : Ref(o.p_) {}
    Ref(Ref&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    Ref& operator=(Ref o) noexcept {
        std::swap(p_, o.p_);
        return *this;
    }
    ~Ref() {
        if (p_) static_cast<Object*>(p_)->Release();
    }

    T* get() const { return p_; }
    T* operator->() const { return p_; }
    T& operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }

    // The object as one of its interfaces, with a reference of its own.
    template <class I>
    tvapi::SmartPtr<I> As() const {
        return tvapi::SmartPtr<I>(p_ ? static_cast<I*>(p_) : nullptr);
    }

private:
    T* p_ = nullptr;
};

// A new simulated object held by its first reference.
template <class T, class... Args>
Ref<T> New(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

// A raw object as one of its interfaces, with a reference of its own.
template <class I, class T>
tvapi::SmartPtr<I> Share(T* p) {
    return tvapi::SmartPtr<I>(p ? static_cast<I*>(p) : nullptr);
}

}  // namespace tvsim
