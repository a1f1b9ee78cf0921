#include "tvapi/accessors.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "sim/defaults_application.h"   // tvsim::Default<I>: every operation answers its default
#include "tvapi/accessor_setters.h"

namespace {

std::atomic<tvapi::IApplication*> application{nullptr};
std::atomic<tvapi::ITransferService*> service{nullptr};

// The real host always has both roots. Outside it nothing is installed
// until the simulated host starts, and a call that comes first is told once
// what to call; meanwhile it reaches an absent root that answers every
// operation with its default, as a null handle does, and the process goes on.
template <class T>
T& Installed(std::atomic<T*>& slot, const char* what) {
    if (T* p = slot) return *p;
    static tvsim::Default<T> absent;
    static std::once_flag told;
    std::call_once(told, [what] {
        std::fprintf(stderr,
                     "tvapi stand-in: no %s installed: outside the application, call tvsim_start() "
                     "(sim/sim.h) first; until then every call answers its default\n",
                     what);
    });
    return absent;
}

}  // namespace

namespace tvapi {

IApplication& GetTavraApplication() { return Installed(application, "application"); }
ITransferService& GetTransferService() { return Installed(service, "transfer service"); }

}  // namespace tvapi

namespace tvapi_standin {

void SetApplication(tvapi::IApplication* a) { application = a; }
void SetTransferService(tvapi::ITransferService* s) { service = s; }

}  // namespace tvapi_standin

extern "C" int tvapi_standin_has_root(const char* root) {
    if (!root) return 0;
    if (std::strcmp(root, "IApplication") == 0) return application != nullptr;
    if (std::strcmp(root, "ITransferService") == 0) return service != nullptr;
    return 0;
}
