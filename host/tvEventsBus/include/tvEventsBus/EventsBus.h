// The host message bus: posts messages for the main thread to handle.
#pragma once

#include <cstdint>
#include <functional>

#include "tvapi/export.h"

#if defined(TVEVENTSBUS_BUILDING)
#define TVEVENTSBUS_API TVHOST_EXPORT
#else
#define TVEVENTSBUS_API TVHOST_IMPORT
#endif

class IEventsTarget;

class TVEVENTSBUS_API EventsBus {
public:
    // Queues a message; returns at once, the main thread handles it later.
    static void Post(unsigned message, std::uint64_t parameter, std::int64_t value, const IEventsTarget* target);
};

// Stand-in only: the simulated host's main loop takes the queued messages.
namespace tveventsbus_standin {

struct Message {
    unsigned message;
    std::uint64_t parameter;
    std::int64_t value;
    const IEventsTarget* target;
};

// Called for every posted message on the posting thread (used by the
// simulated host to wake its main loop). Null removes the listener.
TVEVENTSBUS_API void SetListener(std::function<void(const Message&)> listener);

}  // namespace tveventsbus_standin
