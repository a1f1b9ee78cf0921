#include "tvEventsBus/EventsBus.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace {

std::mutex mutex;
std::condition_variable posted;
std::deque<tveventsbus_standin::Message> queue;

}  // namespace

void EventsBus::Post(unsigned message, std::uint64_t parameter, std::int64_t value, const IEventsTarget* target) {
    {
        std::lock_guard lock(mutex);
        queue.push_back({message, parameter, value, target});
    }
    posted.notify_one();
}

namespace tveventsbus_standin {

bool WaitMessage(Message& out, std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex);
    if (!posted.wait_for(lock, timeout, [] { return !queue.empty(); })) return false;
    out = queue.front();
    queue.pop_front();
    return true;
}

}  // namespace tveventsbus_standin
