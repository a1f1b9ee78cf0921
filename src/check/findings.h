// Findings made while the program runs: each distinct one is written once,
// when first seen, and counted; the exit report gives the counts of those
// seen more than once. Not thread-safe: the caller holds the lock.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tvapic::check {

class Findings {
public:
    // Counts one occurrence of the finding `key`: true the first time.
    bool First(const std::string& key);
    // The line the finding was reported with, for its count at exit.
    void Describe(const std::string& key, std::string line);
    // "<line> (<n> times in all)" for each finding seen more than once.
    std::vector<std::string> Repeated() const;

private:
    struct Seen {
        std::string line;
        std::uint64_t count = 0;
    };
    std::map<std::string, Seen> seen_;
};

}  // namespace tvapic::check
