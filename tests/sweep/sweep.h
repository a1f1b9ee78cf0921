// The export sweep: every generated export is called three times,
//   with a null handle        -> default result, no host call, arguments untouched;
//   with an unrelated object  -> the same, and the object's count unchanged;
//   with a probe              -> exactly one call of the right operation with
//                                the converted arguments, the result converted,
//                                and every reference count back where it was.
// Rooted exports (application, transfer service) have only the third pass.
//
// Each parameter kind (kinds.h) makes a synthetic C argument, says how the
// host should see it, and checks afterwards what the caller got back.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "probe/probe.h"
#include "tvAPIC.h"

namespace sweep {

enum class Mode { NullHandle, Unrelated, Probe };

class Pass;
using CaseBody = void (*)(Pass&);

struct Case {
    const char* interface;
    const char* operation;
    bool rooted;
    const char* answering;         // interfaces the answering object implements, comma-separated
    const char* result_interface;  // the object result's interface, or ""
    CaseBody body;
};

// Runs every case; returns the failures, one line each.
std::vector<std::string> RunAll(const std::vector<Case>& cases, std::size_t& covered);
// Generated: every case of the catalogue.
std::vector<Case> AllCases();
std::size_t ExportCount();

tvapi::WString Text(const tvWChar* s);

// The C vector families by type.
template <class CV>
struct Family;
#define SWEEP_FAMILY(F)                                \
    template <>                                        \
    struct Family<F##_t> {                             \
        static constexpr auto Create = F##_Create;     \
        static constexpr auto Delete = F##_Delete;     \
    };
SWEEP_FAMILY(BoolVector)
SWEEP_FAMILY(Int32Vector)
SWEEP_FAMILY(EnumVector)
SWEEP_FAMILY(ColorVector)
SWEEP_FAMILY(Uint32Vector)
SWEEP_FAMILY(FloatVector)
SWEEP_FAMILY(DoubleVector)
SWEEP_FAMILY(NumericIdVector)
SWEEP_FAMILY(Uint8Vector)
SWEEP_FAMILY(StringVector)
SWEEP_FAMILY(ObjectReferenceVector)
SWEEP_FAMILY(ObjectReferenceVectorVector)
SWEEP_FAMILY(PropertyValueVector)
SWEEP_FAMILY(AttributeValueVector)
SWEEP_FAMILY(StorageValueVector)
#undef SWEEP_FAMILY

// Attribute and storage value lists: a C caller can pass only null, and no
// operation returns one.
template <class CV>
constexpr bool kValueList = std::is_same_v<CV, AttributeValueVector_t> || std::is_same_v<CV, StorageValueVector_t>;

class Pass {
public:
    Pass(const Case& c, Mode mode, tvprobe::Object* target, tvprobe::Object* result,
         std::vector<std::string>& failures);
    ~Pass();

    bool reached() const { return mode_ == Mode::Probe; }
    const tvprobe::Answers& answers() const { return target_->answers; }
    tvprobe::Object* result_object() const { return result_; }

    // A probe object for an argument; released when the pass ends.
    tvprobe::Object* MakeObject(const std::string& interface);
    void Fail(const std::string& what);
    void Expect(bool ok, const std::string& what) {
        if (!ok) Fail(what);
    }

    template <class CR, class... CA, class... K>
    void Check(CR (*fn)(void*, CA...), K&&... kinds) {
        void* handle = mode_ == Mode::NullHandle ? nullptr
                       : mode_ == Mode::Unrelated ? unrelated_->Handle()
                                                  : target_->Handle();
        CheckRooted([&](CA... a) { return fn(handle, a...); }, kinds...);
    }

    template <class F, class... K>
    void CheckRooted(F&& fn, K&&... kinds) {
        if constexpr (std::is_void_v<decltype(fn(kinds.c...))>) {
            fn(kinds.c...);
            Finish({kinds.Expected()...});
        } else {
            auto r = fn(kinds.c...);
            Finish({kinds.Expected()...});
            CheckResult(r);
        }
        (kinds.After(*this), ...);
    }

private:
    void Finish(const std::vector<std::string>& expected_args);
    void CheckResult(bool r);
    void CheckResult(int r);
    void CheckResult(std::uint64_t r);
    void CheckResult(double r);
    void CheckResult(tvWChar* r);
    void CheckResult(void* r);
    template <class CV>
    void CheckResult(CV* r);

    const Case& case_;
    Mode mode_;
    tvprobe::Object* target_;
    tvprobe::Object* result_;
    tvprobe::Object* unrelated_ = nullptr;
    std::vector<tvprobe::Object*> made_;
    std::vector<std::string>& failures_;
    int target_refs_before_;
    int result_refs_before_;
};

// Checks that `v` holds what the probe's answers become for that family:
// element i of a scalar list is 10 + i (flags: i even), texts "e<i>",
// objects the answering object's IAPIObject face, property values 10 + i.
template <class CV>
void CheckAnswerVector(Pass& p, CV* v, std::uint64_t size) {
    if constexpr (kValueList<CV>) {
        p.Fail("value lists are never returned");
    } else {
        if (v->size != size) return p.Fail("list of " + std::to_string(v->size) + " elements");
        for (std::uint64_t i = 0; i < v->size; ++i) {
            auto e = v->data[i];
            bool ok = true;
            if constexpr (std::is_same_v<CV, BoolVector_t>) ok = e == (i % 2 == 0 ? 1 : 0);
            else if constexpr (std::is_same_v<CV, StringVector_t>)
                ok = Text(e) == TVAPIC_TEXT("e") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + i));
            else if constexpr (std::is_same_v<CV, ObjectReferenceVector_t>) ok = e == p.result_object()->Handle();
            else if constexpr (std::is_same_v<CV, ObjectReferenceVectorVector_t>) CheckAnswerVector(p, e, 1);
            else if constexpr (std::is_same_v<CV, PropertyValueVector_t>) ok = PropertyValue_GetInt(e) == int(10 + i);
            else ok = e == static_cast<decltype(e)>(10 + i);
            p.Expect(ok, "list element " + std::to_string(i));
        }
    }
}

// Gives back the references an answered vector carries, deletes the value
// handles it lists (it does not own them), and deletes it.
template <class CV>
void DeleteAnswerVector(CV* v) {
    if constexpr (std::is_same_v<CV, ObjectReferenceVector_t>) {
        for (std::uint64_t i = 0; i < v->size; ++i) {
            if (v->data[i]) IAPIObject_Release(v->data[i]);
        }
    } else if constexpr (std::is_same_v<CV, ObjectReferenceVectorVector_t>) {
        for (std::uint64_t i = 0; i < v->size; ++i) {
            for (std::uint64_t j = 0; v->data[i] && j < v->data[i]->size; ++j) IAPIObject_Release(v->data[i]->data[j]);
        }
    } else if constexpr (std::is_same_v<CV, PropertyValueVector_t>) {
        for (std::uint64_t i = 0; i < v->size; ++i) PropertyValue_Delete(v->data[i]);
    }
    Family<CV>::Delete(v);
}

template <class CV>
void Pass::CheckResult(CV* r) {
    if constexpr (std::is_same_v<CV, PropertyValue_t> || std::is_same_v<CV, AttributeValue_t> ||
                  std::is_same_v<CV, StorageValue_t>) {
        Expect(r == nullptr, "a single value result must be null");
    } else if (!reached()) {
        Expect(r == nullptr, "a vector result must be null when the host is not reached");
    } else if (!r) {
        Fail("the vector result is null");
    } else {
        CheckAnswerVector(*this, r, answers().count);
        DeleteAnswerVector(r);
    }
}

}  // namespace sweep
