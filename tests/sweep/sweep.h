// The export sweep: every generated export is called three times,
//   with a null handle        -> default result, no host call, arguments untouched;
//   with an unrelated object  -> the same, and the object's count unchanged;
//   with a probe              -> exactly one call of the right operation with
//                                the converted arguments, the result converted,
//                                and every reference count back where it was.
// Rooted exports (application, transfer service) have only the third pass.
//
// Each parameter kind below makes a synthetic C argument, says how the host
// should see it, and checks afterwards what the caller got back.
#pragma once

#include <cmath>
#include <cstdlib>
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
    const char* answering;                       // interfaces the answering object implements, comma-separated
    const char* result_interface;                // the object result's interface, or ""
    CaseBody body;
};

// Runs every case; returns the failures, one line each.
std::vector<std::string> RunAll(const std::vector<Case>& cases, std::size_t& covered);
// Generated: every case of the catalogue.
std::vector<Case> AllCases();
std::size_t ExportCount();

tvapi::WString Text(const tvWChar* s);

class Pass {
public:
    Pass(const Case& c, Mode mode, tvprobe::Object* target, tvprobe::Object* result,
         std::vector<std::string>& failures);
    ~Pass();

    Mode mode() const { return mode_; }
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
        if constexpr (std::is_void_v<CR>) {
            fn(handle, kinds.c...);
            Finish({kinds.Expected()...});
        } else {
            CR r = fn(handle, kinds.c...);
            Finish({kinds.Expected()...});
            CheckResult(r);
        }
        (kinds.After(*this), ...);
    }

    template <class CR, class... CA, class... K>
    void CheckRooted(CR (*fn)(CA...), K&&... kinds) {
        if constexpr (std::is_void_v<CR>) {
            fn(kinds.c...);
            Finish({kinds.Expected()...});
        } else {
            CR r = fn(kinds.c...);
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
    void CheckResult(PropertyValue_t* r) { Expect(r == nullptr, "a single value result must be null"); }
    void CheckResult(AttributeValue_t* r) { Expect(r == nullptr, "a single value result must be null"); }
    void CheckResult(StorageValue_t* r) { Expect(r == nullptr, "a single value result must be null"); }
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

// Checks that `v` holds what the probe's answers become for that family.
void CheckAnswerVector(Pass& p, BoolVector_t* v);
void CheckAnswerVector(Pass& p, Int32Vector_t* v);
void CheckAnswerVector(Pass& p, EnumVector_t* v);
void CheckAnswerVector(Pass& p, ColorVector_t* v);
void CheckAnswerVector(Pass& p, Uint32Vector_t* v);
void CheckAnswerVector(Pass& p, FloatVector_t* v);
void CheckAnswerVector(Pass& p, DoubleVector_t* v);
void CheckAnswerVector(Pass& p, NumericIdVector_t* v);
void CheckAnswerVector(Pass& p, Uint8Vector_t* v);
void CheckAnswerVector(Pass& p, StringVector_t* v);
void CheckAnswerVector(Pass& p, ObjectReferenceVector_t* v);
void CheckAnswerVector(Pass& p, ObjectReferenceVectorVector_t* v);
void CheckAnswerVector(Pass& p, PropertyValueVector_t* v);
void CheckAnswerVector(Pass& p, AttributeValueVector_t* v);
void CheckAnswerVector(Pass& p, StorageValueVector_t* v);
// Releases what an answered vector holds and deletes it.
void DeleteAnswerVector(BoolVector_t* v);
void DeleteAnswerVector(Int32Vector_t* v);
void DeleteAnswerVector(EnumVector_t* v);
void DeleteAnswerVector(ColorVector_t* v);
void DeleteAnswerVector(Uint32Vector_t* v);
void DeleteAnswerVector(FloatVector_t* v);
void DeleteAnswerVector(DoubleVector_t* v);
void DeleteAnswerVector(NumericIdVector_t* v);
void DeleteAnswerVector(Uint8Vector_t* v);
void DeleteAnswerVector(StringVector_t* v);
void DeleteAnswerVector(ObjectReferenceVector_t* v);
void DeleteAnswerVector(ObjectReferenceVectorVector_t* v);
void DeleteAnswerVector(PropertyValueVector_t* v);
void DeleteAnswerVector(AttributeValueVector_t* v);
void DeleteAnswerVector(StorageValueVector_t* v);

template <class CV>
void Pass::CheckResult(CV* r) {
    if (!reached()) {
        Expect(r == nullptr, "a vector result must be null when the host is not reached");
        return;
    }
    if (!r) {
        Fail("the vector result is null");
        return;
    }
    CheckAnswerVector(*this, r);
    DeleteAnswerVector(r);
}

}  // namespace sweep
