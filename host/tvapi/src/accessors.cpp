#include "tvapi/accessors.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "tvapi/accessor_setters.h"

namespace {

std::atomic<tvapi::IApplication*> application{nullptr};
std::atomic<tvapi::ITransferService*> service{nullptr};

template <class T>
T& Installed(std::atomic<T*>& slot, const char* what) {
    T* p = slot;
    if (!p) {
        // The real host always has both; a stand-in without them is a test bug.
        std::fprintf(stderr, "tvapi stand-in: no %s installed\n", what);
        std::abort();
    }
    return *p;
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
