#include "check/findings.h"

#include <utility>

namespace tvapic::check {

bool Findings::First(const std::string& key) {
    return ++seen_[key].count == 1;
}

void Findings::Describe(const std::string& key, std::string line) {
    seen_[key].line = std::move(line);
}

std::vector<std::string> Findings::Repeated() const {
    std::vector<std::string> lines;
    for (const auto& [key, seen] : seen_) {
        if (seen.count < 2) continue;
        lines.push_back((seen.line.empty() ? key : seen.line) + " (" + std::to_string(seen.count) + " times in all)");
    }
    return lines;
}

}  // namespace tvapic::check
