// Every remote call runs on the host's main thread, one at a time. The
// server thread queues each call whose request is complete and posts message
// 1627 on the host's message bus, with the queue's address as the message's
// value, when no message of ours is on its way. The main thread, handed the
// message, runs every queued call in the order queued before it returns to
// its message loop: one wake-up for all the calls that are ready.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>

namespace tvapic::server {

constexpr unsigned kRunCallMessage = 1627;

class MainThreadCalls {
public:
    using Work = std::function<void()>;

    // On the server thread. Raises what the message bus raised; the work is
    // then not queued.
    void Queue(Work work);

    // On the main thread: the entry object's run operation. A value that is
    // not this queue's address is no message of ours and is ignored. Inside
    // a running call (a modal dialog's message loop) it returns at once: the
    // calls queued meanwhile run after that call, in this same run.
    void Run(std::int64_t posted);

    // At a stop: the calls the main thread has not begun, which it now never
    // runs. Whoever takes them ends them.
    std::deque<Work> TakeAll();

private:
    std::mutex mutex_;
    std::deque<Work> queued_;
    bool woken_ = false;    // a message is on its way, or the main thread is running calls
    bool running_ = false;  // the main thread is inside Run
};

}  // namespace tvapic::server
