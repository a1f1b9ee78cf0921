#include "tvEventsBus/EventsBus.h"

#include <mutex>
#include <utility>

namespace {
std::mutex mutex;
std::function<void(const tveventsbus_standin::Message&)> listener;
}  // namespace

void EventsBus::Post(unsigned message, std::uint64_t parameter, std::int64_t value, const IEventsTarget* target) {
    std::function<void(const tveventsbus_standin::Message&)> deliver;
    {
        std::lock_guard lock(mutex);
        deliver = listener;
    }
    if (deliver) deliver({message, parameter, value, target});
}

namespace tveventsbus_standin {

void SetListener(std::function<void(const Message&)> l) {
    std::lock_guard lock(mutex);
    listener = std::move(l);
}

}  // namespace tveventsbus_standin
