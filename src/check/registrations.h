// The handlers the host keeps, one record per registration. The host may
// copy a handler as it likes; the record lives while any copy does, so a
// handler the host drops (RemoveAllHandlers, or its events object going
// away) leaves no trace. Add and Remove need the caller's lock.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <unordered_set>

#include "check/check.h"

namespace tvapic::check {

struct Registration {
    const char* export_name;
    std::string key;  // UTF-8; only for keyed registrations
    bool keyed;
    std::atomic<long> copies{1};
};

// Handlers still registered, by export, whether keyed, and key.
using RegisteredCounts = std::map<std::tuple<std::string, bool, std::string>, std::uint64_t>;

class Registrations {
public:
    Registration* Add(const char* export_name, std::string key, bool keyed);
    void Remove(Registration* registration);
    RegisteredCounts Live() const;

private:
    std::unordered_set<Registration*> live_;
};

}  // namespace tvapic::check
