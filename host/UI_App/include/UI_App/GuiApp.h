// The host's user-interface application object.
#pragma once

#include "tvapi/export.h"

#if defined(UI_APP_BUILDING)
#define UI_APP_API TVHOST_EXPORT
#else
#define UI_APP_API TVHOST_IMPORT
#endif

class IGuiApp {
public:
    virtual void HostReserved() = 0;
    // Whether the port given at server start replaces the stored one.
    virtual bool UseStartPort() = 0;

protected:
    ~IGuiApp() = default;
};

UI_APP_API IGuiApp* GuiApp();

// Stand-in only: sets the answer of UseStartPort.
namespace ui_app_standin {
UI_APP_API void SetUseStartPort(bool yes);
}
