// Every remote call runs on the host's main thread: the server thread posts
// it as message 1627 on the host's message bus, with the posted call's
// address as the message's value, and waits for it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

namespace tvapic::server {

constexpr unsigned kRunCallMessage = 1627;

// On the server thread: posts `work` to the main thread and waits until it
// has run there; an error it raised is raised here. Returns false, without
// waiting further, when `stopping` becomes true before the main thread has
// begun the work: the work is then dropped, and the main thread skips it
// when the message arrives. A main thread that stops the server while a
// call waits for it is thus never waited on by its own server.
bool RunOnMainThread(std::function<void()> work, const std::atomic<bool>& stopping);

// On the main thread (the entry object's run operation): runs the call
// whose address was posted with the message.
void RunPostedCall(std::int64_t posted);

}  // namespace tvapic::server
