#include "bridge/main_thread.h"

#include <future>

#include "tvEventsBus/EventsBus.h"

namespace tvapic::bridge {

using PostedCall = std::packaged_task<bool()>;

bool RunOnMainThread(std::function<bool()> call) {
    PostedCall task(std::move(call));
    std::future<bool> done = task.get_future();
    EventsBus::Post(kRunCallMessage, 0, reinterpret_cast<std::int64_t>(&task), nullptr);
    // The task stays alive on this stack until the main thread has set its
    // value, since the wait below ends only then.
    return done.get();
}

void RunPostedCall(std::int64_t posted) {
    // A task without shared state raises no_state; one already run raises
    // promise_already_satisfied. Both reach the host: it posted something
    // other than a fresh call.
    (*reinterpret_cast<PostedCall*>(posted))();
}

}  // namespace tvapic::bridge
