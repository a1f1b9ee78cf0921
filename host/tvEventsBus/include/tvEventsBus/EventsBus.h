// The host message bus: posts messages for the main thread to handle.
#pragma once

#include <chrono>
#include <cstdint>

#include "tvapi/export.h"

#if defined(TVEVENTSBUS_BUILDING)
#define TVEVENTSBUS_API TVHOST_EXPORT
#else
#define TVEVENTSBUS_API TVHOST_IMPORT
#endif

class IEventsTarget;

class TVEVENTSBUS_API EventsBus {
public:
    // Queues a message and returns at once; the main thread handles it later.
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

// Takes the oldest posted message, waiting up to `timeout` for one.
TVEVENTSBUS_API bool WaitMessage(Message& out, std::chrono::milliseconds timeout);

}  // namespace tveventsbus_standin
