// The simulated host's main thread: takes the message bus's messages and
// hands each remote call (message 1627) to the library's entry object, as
// the host's own message loop does.
#pragma once

#include <atomic>

#include "tvapi/export.h"

#if defined(TVSIM_BUILDING)
#define TVSIM_API TVHOST_EXPORT
#else
#define TVSIM_API TVHOST_IMPORT
#endif

namespace tvsim {

class TVSIM_API MainLoop {
public:
    // Handles messages on the calling thread until Quit is called.
    void Run();
    // Makes Run return after the message it is handling, if any.
    void Quit() { quit_ = true; }

private:
    std::atomic<bool> quit_{false};
};

}  // namespace tvsim
