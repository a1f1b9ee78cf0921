// The object handles the API Server has handed to clients. A handle argument
// that is neither 0 nor one of these is taken as null: a client can only
// name objects it was given, so a forged value never reaches the host.
#pragma once

#include <cstdint>
#include <unordered_set>

namespace tvapic::server {

class HandleRegistry {
public:
    static HandleRegistry& Instance();

    // Records a handle sent to a client as a result.
    std::uint64_t Remember(std::uint64_t handle) {
        if (handle) given_.insert(handle);
        return handle;
    }
    // The handle itself when it is 0 or was given out; otherwise 0.
    std::uint64_t Admit(std::uint64_t handle) const { return given_.count(handle) ? handle : 0; }

private:
    // Touched only by handlers, which run one at a time on the main thread.
    std::unordered_set<std::uint64_t> given_;
};

}  // namespace tvapic::server
