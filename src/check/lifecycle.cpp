// Checked mode from load to unload: switched on by the environment, and at
// the end a list of what the caller still holds.
#include <string>
#include <thread>

#include "check/check.h"
#include "check/platform.h"
#include "check/state.h"

namespace tvapic::check {
namespace {

std::string Counted(std::uint64_t n, const char* thing) {
    return std::to_string(n) + " " + thing + (n == 1 ? "" : "s");
}

// "IDocuments_Add 2, IApplication_GetDocuments 1"
std::string Tally(const std::map<std::string, std::uint64_t>& counts) {
    std::string out;
    for (const auto& [name, n] : counts) out += (out.empty() ? "" : ", ") + name + " " + std::to_string(n);
    return out;
}

std::uint64_t Sum(const std::map<std::string, std::uint64_t>& counts) {
    std::uint64_t n = 0;
    for (const auto& entry : counts) n += entry.second;
    return n;
}

void ReportHeld(const State& s) {
    for (const auto& [origin, n] : s.references.Held()) {
        const auto& [export_name, interface, via] = origin;
        Write(export_name + ": " + Counted(n, "reference") + " still held at exit (" + interface +
              (via.empty() ? "" : ", on a handle from " + via) + ")");
    }
    const auto& clients = s.references.HeldByClients();
    if (!clients.empty()) {
        Write("API Server: " + Counted(Sum(clients), "reference") +
              " sent to remote clients, which the protocol cannot give back, so not counted above (" + Tally(clients) +
              ")");
    }
}

void ReportVectors(const State& s) {
    for (const auto& [family, origins] : s.vectors.Left()) {
        Write(family + ": " + Counted(Sum(origins), "vector") + " never deleted (" + Tally(origins) + ")");
    }
}

void ReportHandlers(const State& s) {
    for (const auto& [registration, n] : s.registrations.Live()) {
        const auto& [export_name, keyed, key] = registration;
        const std::string interface = export_name.substr(0, export_name.find('_'));
        Write(export_name + ": " + Counted(n, "handler") + " still registered at exit (" + interface +
              (keyed ? ", key \"" + key + "\"" : "") + ")");
    }
}

}  // namespace

void Start() {
    State& s = TheState();
    std::lock_guard lock(s.mutex);
    s.loading_thread = platform::ThreadNumber();
    s.reported = false;
    enabled = true;
}

void StartFromEnvironment() {
    const std::string value = platform::Switch();
    if (value.empty() || value == "0") return;
    if (value != "1") {
        Write("TVAPIC_CHECK=" + value + " is neither 1 nor 0: checking stays off");
        return;
    }
    const std::string error = platform::OpenOutput();
    if (!error.empty()) Write("TVAPIC_CHECK_LOG: " + error + "; the lines go to the standard error stream");
    Start();
}

void ReportAtExit() {
    if (!enabled) return;
    State& s = TheState();
    // Another thread may be inside the library; where the system has ended
    // it holding the lock (a process exit on Windows), the report gives up.
    std::unique_lock lock(s.mutex, std::try_to_lock);
    for (int tries = 0; !lock.owns_lock() && tries < 1000; ++tries) {
        std::this_thread::yield();
        lock.try_lock();
    }
    if (!lock.owns_lock()) {
        Write("another thread held the library's lock at exit: nothing more is listed");
        return;
    }
    if (s.reported) return;
    s.reported = true;
    for (const std::string& line : s.findings.Repeated()) Write(line);
    ReportHeld(s);
    ReportVectors(s);
    ReportHandlers(s);
}

}  // namespace tvapic::check
