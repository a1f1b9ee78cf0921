#include "shell/main_loop.h"

#include <chrono>

#include "tvEventsBus/EventsBus.h"
#include "tvSys2/entry_points.h"

namespace tvshell {

void MainLoop::Run() {
    using namespace std::chrono_literals;
    tveventsbus_standin::Message m;
    while (!quit_) {
        if (!tveventsbus_standin::WaitMessage(m, 50ms)) continue;
        if (m.message != 1627) continue;
        if (tvapic::ITvAPICEntry* entry = tvsys2_standin::RegisteredEntry()) entry->Run(m.value);
    }
}

}  // namespace tvshell
