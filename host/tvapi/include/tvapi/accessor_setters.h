// Stand-in only: how the simulated host and the tests install the objects
// that the host accessors return. Nothing of the product includes this.
#pragma once

#include "tvapi/export.h"

namespace tvapi {
class IApplication;
class ITransferService;
}  // namespace tvapi

namespace tvapi_standin {

TVAPI_API void SetApplication(tvapi::IApplication* application);
TVAPI_API void SetTransferService(tvapi::ITransferService* service);

}  // namespace tvapi_standin

// Whether a root ("IApplication" or "ITransferService") is installed: 1 or 0.
// The bindings ask it before a rooted call, to raise an error that says what
// to start; inside the application the host's own tvapi has no such function,
// which tells them that the real roots are there.
extern "C" TVAPI_API int tvapi_standin_has_root(const char* root);
