// One remote call between its request and its response. The server thread
// makes it from a decoded request; the main thread runs the export through
// it (Run), which reads the arguments and keeps the result; the server
// thread then encodes the response (Response) and frees what the export
// returned as text.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "server/request.h"
#include "containers/clear.h"
#include "tvAPIC.h"

namespace tvapic::server {

class Call {
public:
    explicit Call(Request request) : function_(request.function), args_(std::move(request.args)) {}
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    // On the main thread: calls the export.
    void Run() { function_->invoke(*this); }

    // On the server thread, after Run: the echoed slots in request order,
    // then the result if it travels. Text results are freed here.
    std::string Response();

    // --- What the generated invokers use, on the main thread. ---

    // A handle argument: a handle the server gave out, or null for anything else.
    void* Object(std::size_t i) const;
    std::uint64_t U64(std::size_t i) const { return std::get<std::uint64_t>(args_[i]); }
    std::int32_t I32(std::size_t i) const { return std::get<std::int32_t>(args_[i]); }
    double F64(std::size_t i) const { return std::get<double>(args_[i]); }
    const tvWChar* Text(std::size_t i) const { return std::get<WireText>(args_[i]).c_str(); }
    std::int32_t* SlotI32(std::size_t i) { return &std::get<Slot<std::int32_t>>(args_[i]).value; }
    double* SlotF64(std::size_t i) { return &std::get<Slot<double>>(args_[i]).value; }

    // Flags, integers and enumerations travel as 4 bytes.
    template <class T>
    void ReturnI32(T r) {
        result_ = static_cast<std::int32_t>(r);
    }
    void ReturnU64(std::uint64_t r) { result_ = r; }
    // A handle sent to the client is remembered: the client may name it later.
    void ReturnObject(void* r);
    void ReturnText(tvWChar* r) { result_ = OwnedText(r); }
    void ReturnTexts(StringVector_t* r) { result_ = OwnedTexts(r); }
    // Results that do not travel are given back at once: a list of objects
    // with the references its elements carry.
    static void Discard(ObjectReferenceVector_t* r);
    static void Discard(Int32Vector_t* r) { Int32Vector_Delete(r); }

private:
    struct FreeText {
        void operator()(tvWChar* text) const;
    };
    struct DeleteTexts {
        void operator()(StringVector_t* texts) const { StringVector_Delete(texts); }
    };
    using OwnedText = std::unique_ptr<tvWChar, FreeText>;
    using OwnedTexts = std::unique_ptr<StringVector_t, DeleteTexts>;

    const RemoteFunction* function_;
    std::vector<WireValue> args_;
    std::variant<std::monostate, std::uint64_t, std::int32_t, OwnedText, OwnedTexts> result_;
};

// Gives back the reference that each element of an object list carries.
inline void ReleaseElements(const ObjectReferenceVector_t& v) {
    for (std::uint64_t i = 0; i < v.size; ++i) {
        if (v.data[i]) IAPIObject_Release(v.data[i]);
    }
}

// The vectors a handler passes for parameters that do not travel: empty,
// and the handler's own, so whatever the function filled into them is given
// back when the handler ends.
template <class CV>
class OwnVector {
public:
    OwnVector() = default;
    OwnVector(const OwnVector&) = delete;
    OwnVector& operator=(const OwnVector&) = delete;
    ~OwnVector() {
        if constexpr (std::is_same_v<CV, ObjectReferenceVector_t>) ReleaseElements(vector_);
        containers::Clear(&vector_);  // the family's clear: a text list's texts, then the block
    }
    CV* get() { return &vector_; }

private:
    CV vector_{0, nullptr};
};

}  // namespace tvapic::server
