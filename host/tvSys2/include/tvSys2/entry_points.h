// The host system library's side of the library entry: the entry object
// interface and the registration point that receives it.
#pragma once

#include <cstdint>

#include "tvapi/export.h"

#if defined(TVSYS2_BUILDING)
#define TVSYS2_API TVHOST_EXPORT
#else
#define TVSYS2_API TVHOST_IMPORT
#endif

namespace tvapic {

// Slot order: deleting destructor, start the server, stop it, run a call
// posted to the main thread (the value posted with message 1627).
class ITvAPICEntry {
public:
    virtual ~ITvAPICEntry() = default;
    virtual void Start(std::uint16_t port) = 0;
    virtual void Stop() = 0;
    virtual void Run(std::int64_t posted) = 0;
};

}  // namespace tvapic

namespace entry_points {

// Receives the library's entry object on load, and null on unload.
TVSYS2_API void SetTvAPIC(tvapic::ITvAPICEntry* entry);

}  // namespace entry_points

// Stand-in only: what the host system library has been given, for tests and
// the demonstration host.
namespace tvsys2_standin {

TVSYS2_API tvapic::ITvAPICEntry* RegisteredEntry();
// How many times SetTvAPIC was called with an object, and with null.
TVSYS2_API int ObjectRegistrations();
TVSYS2_API int NullRegistrations();

}  // namespace tvsys2_standin
