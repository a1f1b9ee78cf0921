#include "sim/sim.h"

#include "sim/application.h"
#include "sim/standin.h"
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

namespace tvsim_standin {

tvapi::WString LastMessage() { return running ? running->LastMessage().message : tvapi::WString(); }
tvapi::WString LastMessageCaption() { return running ? running->LastMessage().caption : tvapi::WString(); }
std::vector<int> ExecutedCommands() { return running ? running->ExecutedCommands() : std::vector<int>(); }

}  // namespace tvsim_standin
