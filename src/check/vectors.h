// The vectors the caller holds: made by `_Create` or handed out by an export,
// until `_Delete`. Not thread-safe: the caller holds the lock.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>

namespace tvapic::check {

class Vectors {
public:
    // `origin` is the export that handed the vector out; null for `_Create`.
    void Made(const void* vector, const char* family, const char* origin) { live_[vector] = {family, origin}; }
    // A vector not made for the caller (an inner one its outer vector deletes) is ignored.
    void Deleted(const void* vector) { live_.erase(vector); }

    // Vectors never deleted: family -> where they came from -> count.
    std::map<std::string, std::map<std::string, std::uint64_t>> Left() const {
        std::map<std::string, std::map<std::string, std::uint64_t>> out;
        for (const auto& [vector, made] : live_) {
            std::string origin = made.origin ? made.origin : std::string(made.family) + "_Create";
            ++out[made.family][origin];
        }
        return out;
    }

private:
    struct Record {
        const char* family;
        const char* origin;
    };
    std::unordered_map<const void*, Record> live_;
};

}  // namespace tvapic::check
