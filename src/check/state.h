// What checked mode keeps between calls, behind one lock, and how it writes.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "check/findings.h"
#include "check/references.h"
#include "check/registrations.h"
#include "check/vectors.h"

namespace tvapic::check {

inline constexpr const char* kPrefix = "tvAPIC check: ";

struct State {
    std::mutex mutex;
    std::uint64_t loading_thread = 0;
    bool reported = false;
    Findings findings;
    References references;
    Vectors vectors;
    Registrations registrations;
};

// Never destroyed: the host may drop handlers, and other threads may call,
// after the exit report.
State& TheState();

// One line, with the prefix.
void Write(const std::string& line);

// Writes `line` the first time the finding `key` is seen and counts it. The
// caller holds the lock.
void Note(State& state, const std::string& key, const std::string& line);

}  // namespace tvapic::check
