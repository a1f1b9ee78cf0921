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
