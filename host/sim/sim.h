// Starting and stopping the simulated host: installs the simulated
// application into the tvapi stand-in so that the library's accessors find it.
#pragma once

#include "tvapi/export.h"

#if defined(TVSIM_BUILDING)
#define TVSIM_API TVHOST_EXPORT
#else
#define TVSIM_API TVHOST_IMPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

TVSIM_API void tvsim_start(void);
TVSIM_API void tvsim_stop(void);

#ifdef __cplusplus
}
#endif
