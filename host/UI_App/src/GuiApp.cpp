#include "UI_App/GuiApp.h"

#include <atomic>

namespace {

std::atomic<bool> use_start_port{true};

class StandInGuiApp final : public IGuiApp {
public:
    void HostReserved() override {}
    bool UseStartPort() override { return use_start_port; }
};

}  // namespace

IGuiApp* GuiApp() {
    static StandInGuiApp app;
    return &app;
}

namespace ui_app_standin {
void SetUseStartPort(bool yes) { use_start_port = yes; }
}  // namespace ui_app_standin
