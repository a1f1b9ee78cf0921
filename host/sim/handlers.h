// The handlers one event of the simulated host holds: each with the key of
// the subscriber that registered it (unkeyed interfaces use the empty key),
// called in registration order.
#pragma once

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

}  // namespace tvsim
