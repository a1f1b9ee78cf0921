#include "server/main_thread.h"

#include <utility>

#include "tvEventsBus/EventsBus.h"

namespace tvapic::server {

void MainThreadCalls::Queue(Work work) {
    std::unique_lock lock(mutex_);
    queued_.push_back(std::move(work));
    if (woken_) return;
    woken_ = true;
    lock.unlock();
    try {
        EventsBus::Post(kRunCallMessage, 0, reinterpret_cast<std::int64_t>(this), nullptr);
    } catch (...) {
        lock.lock();
        woken_ = false;
        queued_.pop_back();  // only the server thread queues: this work is the last
        throw;
    }
}

void MainThreadCalls::Run(std::int64_t posted) {
    if (posted != reinterpret_cast<std::int64_t>(this)) return;
    std::unique_lock lock(mutex_);
    if (running_) return;
    running_ = true;
    while (!queued_.empty()) {
        Work work = std::move(queued_.front());
        queued_.pop_front();
        lock.unlock();
        try {
            work();
        } catch (...) {
            // The work reports its own errors; nothing may stop the calls after it.
        }
        work = nullptr;
        lock.lock();
    }
    running_ = false;
    woken_ = false;
}

std::deque<MainThreadCalls::Work> MainThreadCalls::TakeAll() {
    std::lock_guard lock(mutex_);
    woken_ = false;  // a later call posts a message of its own
    return std::exchange(queued_, {});
}

}  // namespace tvapic::server
