// The host's roots: the application object and the transfer service.
#pragma once

#include "tvapi/export.h"

namespace tvapi {

class IApplication;
class ITransferService;

// References to the host's application object and transfer service; never null.
TVAPI_API IApplication& GetTavraApplication();
TVAPI_API ITransferService& GetTransferService();

}  // namespace tvapi
