// The counted references the caller holds, by handle, each with the export
// that handed it out. Not thread-safe: the caller of these holds the lock.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace tvapic::check {

// Where a reference came from: the export that handed it out, the interface
// of the handle (its IID text; null when unknown) and, for a reference taken
// with IAPIObject_AddRef, where the handle itself came from (null if unknown).
struct Origin {
    const char* export_name = nullptr;
    const char* iid = nullptr;
    const char* via = nullptr;
};

// References still held, grouped by export, interface name and source.
using HeldCounts = std::map<std::tuple<std::string, std::string, std::string>, std::uint64_t>;

class References {
public:
    void HandedOut(void* handle, const Origin& origin);

    // An AddRef: where the new reference is kept from, by what is known of
    // the handle (lent to a running handler, held already, or given back).
    void Added(void* handle);

    // A Release. False when the caller held no counted reference to the
    // handle; `what` then describes the handle as far as it is known.
    bool Released(void* handle, std::string& what);

    // The last reference handed out on `handle` now belongs to a remote
    // client of the API Server. False when none was held.
    bool MoveToClients(void* handle);

    // Lending to a handler: nested lendings of one handle count.
    void Lent(void* handle, const Origin& origin);
    void LendingEnded(void* handle);

    HeldCounts Held() const;
    const std::map<std::string, std::uint64_t>& HeldByClients() const { return clients_; }

private:
    struct Count {
        Origin origin;
        std::uint64_t references;
    };
    struct Lending {
        Origin origin;
        int depth;
    };

    void Forget(void* handle, const Origin& last);

    // References taken last are given back first.
    std::unordered_map<void*, std::vector<Count>> held_;
    std::unordered_map<void*, Lending> lent_;
    // Handles whose counted references were all given back, to describe a
    // second Release. Bounded: cleared when it grows past kGoneLimit.
    static constexpr std::size_t kGoneLimit = 4096;
    std::unordered_map<void*, Origin> gone_;
    std::map<std::string, std::uint64_t> clients_;
};

}  // namespace tvapic::check
