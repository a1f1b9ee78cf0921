// The registration sweep: every registration export is called
//   with a null object            -> nothing registered, nothing called;
//   with an object lacking it     -> asked once, nothing registered, no reference left;
//   with a probe that takes it    -> one handler per call under the key given
//                                    (no key: the empty key), and every reference
//                                    count back where it was; the last call passes
//                                    no callback: nothing registered, nothing asked.
// The handler the probe received is then called the way the host would,
// with a host argument of each kind; the C callback checks what it receives,
// writes to what it may write, and answers; the host's arguments and result
// are checked afterwards (the kinds of argument are in kinds.h).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "events/kinds.h"
#include "probe/event_sink.h"
#include "probe/probe.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace eventsweep {

struct Case {
    std::string name;
    std::function<void(Report&)> run;
};

// Generated from the catalogue: one case per registration.
std::vector<Case> AllCases();
std::size_t RegistrationCount();

// One call of a host handler with arguments of every kind in its signature.
template <class Handler>
class Invocation;

template <class R, class... A>
class Invocation<std::function<R(A...)>> {
public:
    using CR = typename Answers<R>::C;

    explicit Invocation(Report& report) : Invocation(report, std::index_sequence_for<A...>{}) {}

    // Calls the handler once per answer the callback can give.
    void Run(const std::function<R(A...)>& handler) {
        if constexpr (std::is_void_v<R>) {
            Once(handler);
        } else {
            for (const auto& [answer, expected] : Answers<R>::All()) {
                answer_ = answer;
                report_.Expect(Once(handler) == expected, "the callback's answer reached the host changed");
            }
        }
    }

    // The C callback: a plain function of the C signature.
    static CR Callback(typename Kind<A>::C... c) {
        Invocation* self = current_;
        ++self->calls_;
        std::apply([&](auto&... k) { (k.Received(self->report_, c), ...); }, self->kinds_);
        if constexpr (!std::is_void_v<CR>) return self->answer_;
    }

private:
    template <std::size_t... N>
    Invocation(Report& report, std::index_sequence<N...>) : report_(report), kinds_(static_cast<int>(N)...) {}

    R Once(const std::function<R(A...)>& handler) {
        std::apply([](auto&... k) { (k.Before(), ...); }, kinds_);
        calls_ = 0;
        current_ = this;
        struct Done {
            Invocation* self;
            ~Done() {
                current_ = nullptr;
                self->report_.Expect(self->calls_ == 1, "the callback ran " + std::to_string(self->calls_) + " times");
                std::apply([&](auto&... k) { (k.After(self->report_), ...); }, self->kinds_);
            }
        } done{this};
        return std::apply([&](auto&... k) { return handler(k.host()...); }, kinds_);
    }

    static inline Invocation* current_ = nullptr;
    Report& report_;
    std::tuple<Kind<A>...> kinds_;
    int calls_ = 0;
    std::conditional_t<std::is_void_v<CR>, int, CR> answer_{};
};

// The registrations a probe kept, as "event:key" ("event" when unkeyed).
std::vector<std::string> Kept(const tvprobe::EventSink& sink);

template <class Handler>
void CheckHandlers(Report& r, const tvprobe::EventSink& sink, const std::vector<std::string>& expected) {
    r.Expect(Kept(sink) == expected, "kept registrations differ");
    for (const auto& reg : sink.registrations()) {
        r.Expect(reg.handler.type() == typeid(Handler), "a handler of another type was kept");
    }
    if (expected.empty()) return;
    Invocation<Handler> call(r);
    call.Run(std::any_cast<Handler>(sink.registrations()[0].handler));
}

// Calls `registration` with a null handle, a handle without the interface
// (asked once, never referenced) and a probe `calls` times, the last time
// with a null callback, after which the probe's references must be where they
// were.
void CheckCalls(Report& r, const char* interface, int calls, const std::function<void(void*, int)>& registration,
                const std::function<void(tvprobe::Object&)>& kept);

template <class I, class Handler, class Callback>
Case Keyed(const char* interface, const char* event, void (*registration)(void*, const tvWChar*, Callback)) {
    return {std::string(interface) + "_" + event, [=](Report& r) {
                Callback cb = &Invocation<Handler>::Callback;
                const tvWChar* keys[] = {TVAPIC_TEXT("key"), nullptr, TVAPIC_TEXT("key")};
                CheckCalls(r, interface, 3, [&](void* h, int i) { registration(h, keys[i], i < 2 ? cb : nullptr); },
                           [&](tvprobe::Object& o) {
                               std::string e(event);
                               CheckHandlers<Handler>(r, *tvprobe::SinkOf<I>(o), {e + ":key", e + ":"});
                           });
            }};
}

template <class I, class Handler, class Callback>
Case Unkeyed(const char* interface, const char* event, void (*registration)(void*, Callback)) {
    return {std::string(interface) + "_" + event, [=](Report& r) {
                Callback cb = &Invocation<Handler>::Callback;
                CheckCalls(r, interface, 2, [&](void* h, int i) { registration(h, i < 1 ? cb : nullptr); },
                           [&](tvprobe::Object& o) { CheckHandlers<Handler>(r, *tvprobe::SinkOf<I>(o), {event}); });
            }};
}

// A host object that is not an API object: used as it is, never asked.
template <class I, class Handler, class Probe, class Callback>
Case Unqueried(const char* interface, const char* event, void (*registration)(void*, Callback)) {
    return {std::string(interface) + "_" + event, [=](Report& r) {
                Callback cb = &Invocation<Handler>::Callback;
                registration(nullptr, cb);
                Probe probe;
                registration(static_cast<I*>(&probe), cb);
                registration(static_cast<I*>(&probe), nullptr);
                CheckHandlers<Handler>(r, probe, {event});
            }};
}

}  // namespace eventsweep
