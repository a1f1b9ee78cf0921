// Event sinks: how a probe object that takes handlers keeps them, so that a
// test can see what was registered and raise any event with arguments of its
// choosing, reading back afterwards what the handlers wrote.
//
// The generated faces of the interfaces that take handlers derive from
// EventSink: each registration method keeps the handler under its event and
// key; RemoveAllHandlers drops a key's handlers (an unkeyed interface's
// drops them all). Every other operation is recorded as a call, as on any
// probe face.
#pragma once

#include <any>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "probe/probe.h"
#include "tvapi/core.h"

namespace tvprobe {

// One handler as the host received it: the event, the subscriber key (none
// for unkeyed interfaces) and the handler, a std::function of the event's
// host signature.
struct Registration {
    std::string event;
    std::optional<tvapi::WString> key;
    std::any handler;
};

class EventSink {
public:
    const std::vector<Registration>& registrations() const { return registrations_; }

    // Raises `event`: each of its handlers is called in registration order
    // with `args`, which are passed on as they are, so that in/out arguments
    // carry what one handler wrote to the next and back to the caller.
    // Returns the handlers' results, or how many were called for void events.
    template <class Handler, class... A>
    auto Raise(const std::string& event, A&&... args) const {
        using R = typename Handler::result_type;
        std::vector<std::conditional_t<std::is_void_v<R>, int, R>> results;
        for (const Registration& r : std::vector<Registration>(registrations_)) {  // a handler may register more
            if (r.event != event) continue;
            const Handler& h = std::any_cast<const Handler&>(r.handler);
            if constexpr (std::is_void_v<R>) {
                h(args...);
                results.push_back(0);
            } else {
                results.push_back(h(args...));
            }
        }
        if constexpr (std::is_void_v<R>) return results.size();
        else return results;
    }

protected:
    EventSink() = default;
    ~EventSink() = default;

    void Keep(const char* event, const tvapi::WString* key, std::any handler) {
        registrations_.push_back(
            Registration{event, key ? std::optional<tvapi::WString>(*key) : std::nullopt, std::move(handler)});
    }

    // A key drops its own handlers; no key (an unkeyed interface) drops all.
    void Drop(const tvapi::WString* key) {
        std::erase_if(registrations_, [&](const Registration& r) { return !key || r.key == *key; });
    }

private:
    std::vector<Registration> registrations_;
};

// The sink behind a probe object's face of I (an interface that takes
// handlers), or null when the object has no such face.
template <class I>
EventSink* SinkOf(Object& o) {
    I* face = o.As<I>();
    return face ? dynamic_cast<EventSink*>(face) : nullptr;
}

}  // namespace tvprobe
