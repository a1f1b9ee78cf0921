// Every remote call runs on the host's main thread: the server thread posts
// it as message 1627 on the host's message bus and waits for it.
#pragma once

#include <cstdint>
#include <functional>

namespace tvapic::bridge {

constexpr unsigned kRunCallMessage = 1627;

// On the server thread: posts `call` to the main thread and waits for its
// result; an error the call raised is raised here.
bool RunOnMainThread(std::function<bool()> call);

// On the main thread (the entry object's run operation): runs the call whose
// address was posted with the message.
void RunPostedCall(std::int64_t posted);

}  // namespace tvapic::bridge
