// The host process's main thread: takes the message bus's messages and
// hands each remote call (message 1627) to the library's entry object, as
// the host's own message loop does.
#pragma once

#include <atomic>

namespace tvshell {

class MainLoop {
public:
    // Handles messages on the calling thread until Quit is called.
    void Run();
    // Makes Run return after the message it is handling, if any.
    void Quit() { quit_ = true; }

private:
    std::atomic<bool> quit_{false};
};

}  // namespace tvshell
