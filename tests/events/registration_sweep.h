// The registration sweep: every registration export is called
//   with a null object            -> nothing registered, nothing called;
//   with an object lacking it     -> asked once, nothing registered, no reference left;
//   with a probe that takes it    -> one handler per call under the key given
//                                    (no key: the empty key; no callback: kept as is),
//                                    and every reference count back where it was.
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
template <class Signature>
class Invocation;

template <class R, class... A>
class Invocation<R(A...)> {
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
                R got = Once(handler);
                report_.Expect(got == expected, "the callback's answer reached the host changed");
            }
        }
    }

    // The C callback: a plain function of the C signature.
    static CR Callback(typename Kind<A>::C... c) {
        Invocation* self = current_;
        ++self->calls_;
        self->Receive(std::index_sequence_for<A...>{}, c...);
        if constexpr (!std::is_void_v<CR>) return self->answer_;
    }

private:
    template <std::size_t... N>
    Invocation(Report& report, std::index_sequence<N...>) : report_(report), kinds_(static_cast<int>(N)...) {}

    template <std::size_t... N>
    void Receive(std::index_sequence<N...>, typename Kind<A>::C... c) {
        (std::get<N>(kinds_).Received(report_, c), ...);
    }

    R Once(const std::function<R(A...)>& handler) {
        std::apply([](auto&... k) { (k.Before(), ...); }, kinds_);
        calls_ = 0;
        current_ = this;
        struct Done {
            ~Done() { current_ = nullptr; }
        } done;
        if constexpr (std::is_void_v<R>) {
            std::apply([&](auto&... k) { handler(k.host()...); }, kinds_);
            Check();
        } else {
            R got = std::apply([&](auto&... k) { return handler(k.host()...); }, kinds_);
            Check();
            return got;
        }
    }

    void Check() {
        report_.Expect(calls_ == 1, "the callback ran " + std::to_string(calls_) + " times");
        std::apply([&](auto&... k) { (k.After(report_), ...); }, kinds_);
    }

    static inline Invocation* current_ = nullptr;
    Report& report_;
    std::tuple<Kind<A>...> kinds_;
    int calls_ = 0;
    std::conditional_t<std::is_void_v<CR>, int, CR> answer_{};
};

template <class Handler>
struct SignatureOf;
template <class S>
struct SignatureOf<std::function<S>> {
    using type = S;
};

template <class Handler>
using InvocationOf = Invocation<typename SignatureOf<Handler>::type>;

std::string Key(const std::optional<tvapi::WString>& key);

// The registrations a probe kept, as "event:key" ("event" when unkeyed).
std::vector<std::string> Kept(const tvprobe::EventSink& sink);

template <class Handler>
void CheckHandlers(Report& r, const tvprobe::EventSink& sink, const std::vector<std::string>& expected) {
    std::vector<std::string> kept = Kept(sink);
    r.Expect(kept == expected, "kept registrations differ");
    for (const auto& reg : sink.registrations()) {
        r.Expect(reg.handler.type() == typeid(Handler), "a handler of another type was kept");
    }
    if (kept.empty()) return;
    Invocation<typename SignatureOf<Handler>::type> call(r);
    call.Run(std::any_cast<Handler>(sink.registrations()[0].handler));
}

// A handle without the interface: asked once, and nothing else.
void CheckForeign(Report& r, const std::function<void(void*)>& registration);
// The probe's references after `registrations` registrations.
void CheckBalanced(Report& r, tvprobe::Object& o, int registrations);

template <class I, class Handler, class Callback>
Case Keyed(const char* interface, const char* event, void (*registration)(void*, const tvWChar*, Callback)) {
    return {std::string(interface) + "_" + event, [=](Report& r) {
                Callback cb = &InvocationOf<Handler>::Callback;
                registration(nullptr, TVAPIC_TEXT("key"), cb);
                CheckForeign(r, [&](void* h) { registration(h, TVAPIC_TEXT("key"), cb); });
                tvprobe::Object* o = tvprobe::Object::Create({interface});
                registration(o->Handle(), TVAPIC_TEXT("key"), cb);
                registration(o->Handle(), nullptr, cb);
                registration(o->Handle(), TVAPIC_TEXT("key"), nullptr);
                CheckBalanced(r, *o, 3);
                std::string e(event);
                CheckHandlers<Handler>(r, *tvprobe::SinkOf<I>(*o), {e + ":key", e + ":", e + ":key"});
                o->Release();
            }};
}

template <class I, class Handler, class Callback>
Case Unkeyed(const char* interface, const char* event, void (*registration)(void*, Callback)) {
    return {std::string(interface) + "_" + event, [=](Report& r) {
                Callback cb = &InvocationOf<Handler>::Callback;
                registration(nullptr, cb);
                CheckForeign(r, [&](void* h) { registration(h, cb); });
                tvprobe::Object* o = tvprobe::Object::Create({interface});
                registration(o->Handle(), cb);
                registration(o->Handle(), nullptr);
                CheckBalanced(r, *o, 2);
                CheckHandlers<Handler>(r, *tvprobe::SinkOf<I>(*o), {event, event});
                o->Release();
            }};
}

// A host object that is not an API object: used as it is, never asked.
template <class I, class Handler, class Probe, class Callback>
Case Unqueried(const char* interface, const char* event, void (*registration)(void*, Callback)) {
    return {std::string(interface) + "_" + event, [=](Report& r) {
                Callback cb = &InvocationOf<Handler>::Callback;
                registration(nullptr, cb);
                Probe probe;
                registration(static_cast<I*>(&probe), cb);
                CheckHandlers<Handler>(r, probe, {event});
            }};
}

}  // namespace eventsweep
