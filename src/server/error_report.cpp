#include "server/error_report.h"

#include <algorithm>
#include <cstdio>

namespace tvapic::server {

ErrorReport::ErrorReport(std::function<void(const std::string&)> write) : write_(std::move(write)) {}

void ErrorReport::WriteLine(const std::string& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
    std::fflush(stderr);
}

void ErrorReport::Write(const std::string& what, int times) {
    write_("API Server: " + what + (times > 1 ? " (" + std::to_string(times) + " times)" : ""));
}

void ErrorReport::WriteOthers() {
    write_("API Server: " + std::to_string(others_.held) +
           (others_.held == 1 ? " error of another kind" : " errors of other kinds"));
    others_.held = 0;
}

void ErrorReport::Forget(Clock::time_point now) {
    std::erase_if(kinds_, [now](const auto& kind) { return kind.second.held == 0 && kind.second.quiet_until <= now; });
}

void ErrorReport::Add(const std::string& what, Clock::time_point now) {
    Forget(now);
    auto found = kinds_.find(what);
    if (found == kinds_.end() && kinds_.size() >= kMaxKinds) {
        // Counted, and written together when their second is over.
        if (others_.held++ == 0) others_.quiet_until = std::max(others_.quiet_until, now + kInterval);
        return;
    }
    Kind& kind = found != kinds_.end() ? found->second : kinds_[what];
    if (kind.quiet_until > now) {
        ++kind.held;
        return;
    }
    Write(what, kind.held + 1);
    kind = Kind{now + kInterval, 0};
}

std::optional<ErrorReport::Clock::time_point> ErrorReport::Flush(Clock::time_point now) {
    std::optional<Clock::time_point> next;
    auto due = [&](Kind& kind) {
        if (kind.held == 0) return false;
        if (kind.quiet_until <= now) return true;
        next = next ? std::min(*next, kind.quiet_until) : kind.quiet_until;
        return false;
    };
    for (auto& [what, kind] : kinds_) {
        if (!due(kind)) continue;
        Write(what, kind.held);
        kind = Kind{now + kInterval, 0};
    }
    if (due(others_)) {
        WriteOthers();
        others_.quiet_until = now + kInterval;
    }
    Forget(now);
    return next;
}

void ErrorReport::FlushAll() {
    for (auto& [what, kind] : kinds_) {
        if (kind.held > 0) Write(what, kind.held);
    }
    if (others_.held > 0) WriteOthers();
    kinds_.clear();
    others_ = Kind{};
}

}  // namespace tvapic::server
