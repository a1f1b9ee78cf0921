#include "sweep/sweep.h"

#include <algorithm>

#include "common/c_heap.h"

namespace sweep {
namespace {

const char* const kModeNames[] = {"null handle", "unrelated handle", "probe"};

std::string Join(const std::vector<std::string>& items) {
    std::string out;
    for (const auto& s : items) out += (out.empty() ? "" : ", ") + s;
    return out;
}

std::vector<std::string> Split(const std::string& names) {
    std::vector<std::string> out;
    for (std::size_t start = 0, end; start < names.size(); start = end + 1) {
        end = std::min(names.find(',', start), names.size());
        out.push_back(names.substr(start, end - start));
    }
    return out;
}

}  // namespace

tvapi::WString Text(const tvWChar* s) { return s ? s : tvapi::WString(); }

Pass::Pass(const Case& c, Mode mode, tvprobe::Object* target, tvprobe::Object* result,
           std::vector<std::string>& failures)
    : case_(c), mode_(mode), target_(target), result_(result), failures_(failures) {
    if (mode == Mode::Unrelated) unrelated_ = tvprobe::Object::Create({});
    target_refs_before_ = target_->refs();
    result_refs_before_ = result_->refs();
}

Pass::~Pass() {
    if (target_->refs() != target_refs_before_ || target_->addrefs != target_->releases) {
        Fail("the handle's reference count moved: " + std::to_string(target_refs_before_) + " -> " +
             std::to_string(target_->refs()));
    }
    Expect(result_->refs() == result_refs_before_, "the result object's references were not all given back");
    if (unrelated_) {
        Expect(unrelated_->refs() == 1 && unrelated_->calls.empty(), "the unrelated object was touched");
        unrelated_->Release();
    }
    for (auto* o : made_) o->Release();
}

tvprobe::Object* Pass::MakeObject(const std::string& interface) {
    made_.push_back(tvprobe::Object::Create(std::vector<std::string>{interface}));
    return made_.back();
}

void Pass::Fail(const std::string& what) {
    failures_.push_back(std::string(case_.interface) + "_" + case_.operation + " (" +
                        kModeNames[static_cast<int>(mode_)] + "): " + what);
}

void Pass::Finish(const std::vector<std::string>& expected_args) {
    if (!reached()) return Expect(target_->calls.empty(), "the host was called");
    if (target_->calls.size() != 1) return Fail("expected one host call, got " + std::to_string(target_->calls.size()));
    const tvprobe::Call& call = target_->calls[0];
    Expect(call.interface == case_.interface && call.operation == case_.operation,
           "called " + call.interface + "." + call.operation);
    Expect(call.args == expected_args,
           "host received (" + Join(call.args) + "), expected (" + Join(expected_args) + ")");
    Expect(result_->calls.empty(), "the result object was called");
}

void Pass::CheckResult(bool r) { Expect(r == (reached() && answers().flag), "flag result"); }
void Pass::CheckResult(int r) { Expect(r == (reached() ? answers().number : 0), "integer result"); }
void Pass::CheckResult(std::uint64_t r) { Expect(r == (reached() ? answers().id : 0), "64-bit result"); }
void Pass::CheckResult(double r) { Expect(r == (reached() ? answers().real : 0.0), "real result"); }

void Pass::CheckResult(tvWChar* r) {
    if (!reached()) return Expect(r == nullptr, "a text result must be null when the host is not reached");
    Expect(r != nullptr && Text(r) == answers().text, "text result");
    c_heap::Free(r);
}

void Pass::CheckResult(void* r) {
    if (!reached()) return Expect(r == nullptr, "an object result must be null when the host is not reached");
    Expect(r == result_->Face(case_.result_interface), "the object result must be the host's pointer");
    Expect(result_->refs() == result_refs_before_ + 1, "an object result must carry exactly one reference");
    if (r) IAPIObject_Release(r);
}

std::vector<std::string> RunAll(const std::vector<Case>& cases, std::size_t& covered) {
    std::vector<std::string> failures;
    covered = 0;
    for (const Case& c : cases) {
        std::vector<Mode> modes{Mode::Probe};
        if (!c.rooted) modes = {Mode::NullHandle, Mode::Unrelated, Mode::Probe};
        for (Mode mode : modes) {
            auto* target = tvprobe::Object::Create(std::vector<std::string>{c.interface});
            auto* result = tvprobe::Object::Create(Split(c.answering));
            target->answers.object = result;
            if (c.rooted) tvprobe::InstallAsRoot(target, c.interface);
            {
                Pass pass(c, mode, target, result, failures);
                c.body(pass);
            }
            if (c.rooted) tvprobe::InstallAsRoot(nullptr, c.interface);
            if (target->refs() == 1) target->Release();
            if (result->refs() == 1) result->Release();
        }
        ++covered;
    }
    return failures;
}

}  // namespace sweep
