#include "sim/sim.h"

#include "sim/model.h"
#include "tvapi/standin.h"

namespace {
tvsim::Application* running = nullptr;
}

extern "C" {

void tvsim_start(void) {
    if (running) return;
    running = new tvsim::Application();
    tvapi_standin::SetApplication(running);
}

void tvsim_stop(void) {
    tvapi_standin::SetApplication(nullptr);
    delete running;
    running = nullptr;
}

}  // extern "C"
