#include "check/references.h"

#include <cstring>

#include "check/interfaces.h"

namespace tvapic::check {
namespace {

bool SameText(const char* a, const char* b) {
    return a == b || (a && b && std::strcmp(a, b) == 0);
}

bool SameOrigin(const Origin& a, const Origin& b) {
    return SameText(a.export_name, b.export_name) && SameText(a.iid, b.iid) && SameText(a.via, b.via);
}

// Where a handle came from, for a reference taken on it with AddRef.
const char* SourceOf(const Origin& o) { return o.via ? o.via : o.export_name; }

}  // namespace

void References::HandedOut(void* handle, const Origin& origin) {
    gone_.erase(handle);
    std::vector<Count>& counts = held_[handle];
    if (!counts.empty() && SameOrigin(counts.back().origin, origin)) {
        ++counts.back().references;
    } else {
        counts.push_back({origin, 1});
    }
}

void References::Added(void* handle) {
    Origin origin{"IAPIObject_AddRef"};
    const Origin* known = nullptr;
    if (auto lent = lent_.find(handle); lent != lent_.end()) {
        known = &lent->second.origin;
    } else if (auto held = held_.find(handle); held != held_.end()) {
        known = &held->second.back().origin;
    } else if (auto gone = gone_.find(handle); gone != gone_.end()) {
        known = &gone->second;
    }
    if (known) {
        origin.iid = known->iid;
        origin.via = SourceOf(*known);
    }
    HandedOut(handle, origin);
}

bool References::Released(void* handle, std::string& what) {
    auto held = held_.find(handle);
    if (held != held_.end()) {
        std::vector<Count>& counts = held->second;
        Origin last = counts.back().origin;
        if (--counts.back().references == 0) counts.pop_back();
        if (counts.empty()) {
            held_.erase(held);
            Forget(handle, last);
        }
        return true;
    }
    if (auto lent = lent_.find(handle); lent != lent_.end()) {
        const Origin& o = lent->second.origin;
        what = "a handle lent to a handler of " + std::string(o.export_name) + " (" + InterfaceName(o.iid) +
               "), not kept with IAPIObject_AddRef";
    } else if (auto gone = gone_.find(handle); gone != gone_.end()) {
        what = "a handle whose counted references were all given back already (" + InterfaceName(gone->second.iid) +
               " from " + SourceOf(gone->second) + ")";
    } else {
        what = "a handle the caller holds no counted reference to (not handed out by the library, or only lent)";
    }
    return false;
}

bool References::MoveToClients(void* handle) {
    auto held = held_.find(handle);
    if (held == held_.end()) return false;
    std::vector<Count>& counts = held->second;
    ++clients_[counts.back().origin.export_name];
    if (--counts.back().references == 0) counts.pop_back();
    if (counts.empty()) held_.erase(held);
    return true;
}

void References::Lent(void* handle, const Origin& origin) {
    auto [lending, fresh] = lent_.try_emplace(handle, Lending{origin, 0});
    (void)fresh;
    ++lending->second.depth;
}

void References::LendingEnded(void* handle) {
    auto lending = lent_.find(handle);
    if (lending != lent_.end() && --lending->second.depth == 0) lent_.erase(lending);
}

void References::Forget(void* handle, const Origin& last) {
    if (gone_.size() >= kGoneLimit) gone_.clear();
    gone_[handle] = last;
}

HeldCounts References::Held() const {
    HeldCounts out;
    for (const auto& [handle, counts] : held_) {
        for (const Count& c : counts) {
            out[{c.origin.export_name, InterfaceName(c.origin.iid), c.origin.via ? c.origin.via : ""}] +=
                c.references;
        }
    }
    return out;
}

}  // namespace tvapic::check
