// Probe objects: stand-in host objects that implement any catalogued
// interface, record every call they receive (operation and arguments, as
// text), answer with results a test chose, and count references and queries.
//
// One Object has one reference count and one face per interface it
// implements; each face is generated from the catalogue and forwards every
// operation to Object::On.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "probe/describe.h"
#include "tvapi/core.h"
#include "tvapi/values.h"

namespace tvprobe {

class Object;

struct Call {
    std::string interface;
    std::string operation;
    std::vector<std::string> args;
    std::thread::id thread = std::this_thread::get_id();  // the thread the host was called on
};

// What probes answer. Lists have `count` elements made by ElementAnswer.
struct Answers {
    bool flag = true;
    int number = 42;
    std::uint64_t id = 4242;
    double real = 4.25;
    tvapi::WString text = TVAPI_TEXT("answer");
    Object* object = nullptr;  // object results, out-objects and list elements
    std::size_t count = 3;

    // Written through out-parameters (scalars) after the call is recorded.
    int out_number = 66;
    double out_real = 6.5;
    bool out_flag = false;
    std::uint64_t out_id = 6666;
};

// Base of every generated face: lets an Object own faces of any interface.
class FaceBase {
public:
    virtual ~FaceBase() = default;
};

struct FaceMade {
    std::unique_ptr<FaceBase> owner;
    void* face;  // the face as a pointer to its interface
};

struct FaceFactory {
    const char* name;
    const char* iid;  // null for rooted interfaces
    FaceMade (*make)(Object&);
};

// Generated: the factory of a catalogued interface, or null.
const FaceFactory* FindFace(const std::string& name);

template <class I>
struct FaceName;  // specialised by the generated probe_faces.h

class Object {
public:
    // A new object implementing the named interfaces (and IAPIObject); the
    // caller holds its one reference.
    static Object* Create(std::initializer_list<const char*> interfaces);
    static Object* Create(const std::vector<std::string>& interfaces);
    // The object whose face is `face`, or null.
    static Object* Owning(const void* face);

    int AddRef();
    int Release();
    void* Query(const char* iid);

    // The IAPIObject face: the handle a C caller holds.
    void* Handle() { return base_; }
    void* Face(const std::string& interface) const;
    template <class I>
    I* As() const {
        return static_cast<I*>(Face(FaceName<I>::value));
    }

    int refs() const { return refs_; }
    int id() const { return id_; }

    int addrefs = 0;
    int releases = 0;
    int queries = 0;
    std::vector<Call> calls;
    Answers answers;
    // Sees each AddRef, Release, query (with the IID text as given, once
    // looked up) and host call, named by the operation, before it takes
    // effect. It may throw, as a host may.
    std::function<void(const std::string& what, const char* iid)> watch;

    // Records a call, writes out-parameters and in/out lists, and answers.
    template <class R, class... A>
    R On(const char* interface, const char* operation, A&&... args);

private:
    Object();
    ~Object();
    void AddFace(const std::string& interface);

    int refs_ = 1;
    int id_;
    void* base_ = nullptr;
    std::vector<std::unique_ptr<FaceBase>> owners_;
    std::map<std::string, void*> by_name_;
    std::map<std::string, void*> by_iid_;
};

// A new object for the length of a test: created with the named interfaces,
// its one reference given back when the holder goes.
struct Held {
    Object* o;
    explicit Held(std::initializer_list<const char*> interfaces) : o(Object::Create(interfaces)) {}
    explicit Held(const char* interface) : Held({interface}) {}
    ~Held() { o->Release(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Object* operator->() const { return o; }
    void* handle() const { return o->Handle(); }
    std::string name() const { return "obj" + std::to_string(o->id()); }
};

// Makes `object` the host's application or transfer service (by its face for
// `root`, "IApplication" or "ITransferService"); null uninstalls.
void InstallAsRoot(Object* object, const std::string& root);

// The result of type R that an object answers.
template <class R>
R Answer(const Answers& a);

template <class X>
X ElementAnswer(const Answers& a, std::size_t index);

template <class R>
R Answer(const Answers& a) {
    if constexpr (std::is_same_v<R, bool>) return a.flag;
    else if constexpr (std::is_same_v<R, std::uint64_t>) return a.id;
    else if constexpr (std::is_same_v<R, double>) return a.real;
    else if constexpr (std::is_integral_v<R> || std::is_enum_v<R>) return static_cast<R>(a.number);
    else if constexpr (std::is_same_v<R, tvapi::WString>) return a.text;
    else if constexpr (IsSmartPtr<R>::value) return ElementAnswer<R>(a, 0);
    else if constexpr (IsVector<R>::value) {
        R out;
        for (std::size_t i = 0; i < a.count; ++i) out.push_back(ElementAnswer<typename R::value_type>(a, i));
        return out;
    } else {
        return ElementAnswer<R>(a, 0);
    }
}

template <class X>
X ElementAnswer(const Answers& a, std::size_t i) {
    if constexpr (std::is_same_v<X, bool>) return i % 2 == 0;
    else if constexpr (std::is_same_v<X, tvapi::WString>)
        return TVAPI_TEXT("e") + tvapi::WString(1, tvapi::WChar(TVAPI_TEXT('0') + i % 10));
    else if constexpr (std::is_arithmetic_v<X>) return static_cast<X>(10 + i);
    else if constexpr (IsSmartPtr<X>::value) {
        using I = std::remove_pointer_t<decltype(X().get())>;
        return a.object ? X(static_cast<I*>(a.object->Query(tvapi::IAPIObjectIID<I>::text))) : X();
    } else if constexpr (IsVector<X>::value) {
        X inner;
        inner.push_back(ElementAnswer<typename X::value_type>(a, i));
        return inner;
    } else if constexpr (std::is_same_v<X, tvapi::PropertyValue>) {
        X v;
        v.SetInt(static_cast<int>(10 + i));
        return v;
    } else {
        return X(TVAPI_TEXT("v") + tvapi::WString(1, tvapi::WChar(TVAPI_TEXT('0') + i % 10)));
    }
}

// Out-parameters and in/out lists receive the probe's answers.
template <class T>
void WriteOut(const Answers& a, T&& arg) {
    using U = std::remove_cvref_t<T>;
    if constexpr (std::is_pointer_v<U>) {
        using P = std::remove_pointer_t<U>;
        if (!arg) return;
        if constexpr (std::is_same_v<P, bool>) *arg = a.out_flag;
        else if constexpr (std::is_same_v<P, double>) *arg = a.out_real;
        else if constexpr (std::is_same_v<P, std::uint64_t>) *arg = a.out_id;
        else if constexpr (std::is_integral_v<P> || std::is_enum_v<P>) *arg = static_cast<P>(a.out_number);
        else if constexpr (IsSmartPtr<P>::value) *arg = Answer<P>(a);
    } else if constexpr (IsVector<U>::value && !std::is_const_v<std::remove_reference_t<T>>) {
        arg = Answer<U>(a);
    }
}

template <class R, class... A>
R Object::On(const char* interface, const char* operation, A&&... args) {
    if (watch) watch(operation, nullptr);
    calls.push_back(Call{interface, operation, {Describe(args)...}});
    (WriteOut(answers, args), ...);
    if constexpr (!std::is_void_v<R>) return Answer<R>(answers);
}

}  // namespace tvprobe
