// What an events object of the simulated host keeps: the handlers of each
// event, with the key of the subscriber that registered them (unkeyed
// interfaces use the empty key), called in registration order; and the
// filters by which a subscriber chooses the objects it hears of.
#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "tvapi/core.h"

namespace tvsim {

template <class Handler>
class HandlerList {
public:
    using Result = typename Handler::result_type;

    void Add(const tvapi::WString& key, Handler handler) { entries_.push_back({key, std::move(handler)}); }
    void Add(Handler handler) { Add(tvapi::WString(), std::move(handler)); }

    void Remove(const tvapi::WString& key) {
        std::erase_if(entries_, [&](const Entry& e) { return e.key == key; });
    }
    void Clear() { entries_.clear(); }

    std::size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }

    // Calls every handler with `args`, in registration order. In/out
    // arguments are passed on as they are, so what one handler writes the
    // next one reads. Returns each handler's result (void events: nothing).
    // A handler registered empty is skipped: the host cannot call it.
    template <class... A>
    auto Raise(A&&... args) const {
        // A handler may register or remove handlers; call a snapshot.
        const std::vector<Entry> snapshot = entries_;
        if constexpr (std::is_void_v<Result>) {
            for (const Entry& e : snapshot) {
                if (e.handler) e.handler(args...);
            }
        } else {
            std::vector<Result> results;
            for (const Entry& e : snapshot) {
                if (e.handler) results.push_back(e.handler(args...));
            }
            return results;
        }
    }

    // For "Begin…" events whose handlers may veto: true unless a handler
    // answered false.
    template <class... A>
    bool RaiseAllowing(A&&... args) const {
        for (bool allowed : Raise(std::forward<A>(args)...)) {
            if (!allowed) return false;
        }
        return true;
    }

private:
    struct Entry {
        tvapi::WString key;
        Handler handler;
    };
    std::vector<Entry> entries_;
};

// The objects a subscriber wants to hear of; none listed: all of them.
// Objects are told apart by identity (their IAPIObject face), not by which
// of their interfaces the list held.
template <class Element>
class ObjectFilter {
public:
    using List = std::vector<tvapi::SmartPtr<Element>>;

    void Add(const List& objects) {
        for (const auto& o : objects) {
            if (o && !Contains(o.get())) kept_.push_back(o);
        }
    }
    void Remove(const List& objects) {
        for (const auto& o : objects) {
            if (o) std::erase_if(kept_, [&](const auto& k) { return Identity(k.get()) == Identity(o.get()); });
        }
    }
    void Clear() { kept_.clear(); }
    bool Admits(Element* object) const { return kept_.empty() || Contains(object); }

private:
    static const void* Identity(Element* o) {
        return o->QueryInterface(tvapi::IAPIObjectIID<tvapi::IAPIObject>::text);
    }
    bool Contains(Element* object) const {
        return std::any_of(kept_.begin(), kept_.end(), [&](const auto& k) { return Identity(k.get()) == Identity(object); });
    }

    List kept_;  // the listed objects stay alive while listed
};

// The object types (or codes) a subscriber wants to hear of; none: all.
class TypeFilter {
public:
    void Add(const std::vector<std::int32_t>& types) {
        for (std::int32_t t : types) {
            if (std::find(types_.begin(), types_.end(), t) == types_.end()) types_.push_back(t);
        }
    }
    void Remove(const std::vector<std::int32_t>& types) {
        std::erase_if(types_, [&](std::int32_t t) { return std::find(types.begin(), types.end(), t) != types.end(); });
    }
    void Clear() { types_.clear(); }
    bool Admits(std::int32_t type) const {
        return types_.empty() || std::find(types_.begin(), types_.end(), type) != types_.end();
    }

private:
    std::vector<std::int32_t> types_;
};

}  // namespace tvsim
