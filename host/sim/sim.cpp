#include "sim/sim.h"

#include <filesystem>
#include <string>

#include "sim/headless_state.h"
#include "sim/model/application/application.h"
#include "sim/support/text.h"
#include "tvapi/accessor_setters.h"

namespace {
tvsim::Application* running = nullptr;
// The transfer service is not modelled: every operation answers its default.
tvsim::Default<tvapi::ITransferService> transfer;
}

extern "C" {

void tvsim_start(void) {
    if (running) return;
    running = new tvsim::Application();
    tvapi_standin::SetApplication(running);
    tvapi_standin::SetTransferService(&transfer);
}

int tvsim_set_files_root(const char* utf8_path) {
    tvapi::WString root;
    if (utf8_path && !tvsim::FromUtf8(utf8_path, root)) return 0;
    tvsim::SetFilesRoot(tvsim::ToPath(root));
    // Documents can only be read and written there: the current directory
    // starts there too.
    if (running) running->SetCurrentDirectory(root.empty() ? tvsim::Application::StartDirectory() : root);
    return 1;
}

void tvsim_stop(void) {
    tvapi_standin::SetApplication(nullptr);
    tvapi_standin::SetTransferService(nullptr);
    delete running;
    running = nullptr;
}

}  // extern "C"

namespace tvsim_standin {

tvapi::WString LastMessage() { return running ? running->LastMessage().message : tvapi::WString(); }
tvapi::WString LastMessageCaption() { return running ? running->LastMessage().caption : tvapi::WString(); }
std::vector<int> ExecutedCommands() { return running ? running->ExecutedCommands() : std::vector<int>(); }

}  // namespace tvsim_standin
