// Base of the simulated host's objects: one reference count and the
// interfaces the object answers to by IID text.
#pragma once

#include <atomic>
#include <string>
#include <unordered_map>

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

private:
    std::atomic<int> refs_{0};
    std::unordered_map<std::string, void*> faces_;
};

// A new simulated object of type T, held by an owning pointer of interface I.
template <class I, class T, class... Args>
tvapi::SmartPtr<I> Make(Args&&... args) {
    T* object = new T(std::forward<Args>(args)...);
    return tvapi::SmartPtr<I>(static_cast<I*>(object));
}

}  // namespace tvsim
