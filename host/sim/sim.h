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
// Confines the simulated host's file reads and writes to the folder at
// `utf8_path` and below; null or empty lifts the limit. The application's
// current directory moves there (back to the working directory when lifted).
// 0, changing nothing, when the path is not UTF-8.
TVSIM_API int tvsim_set_files_root(const char* utf8_path);

#ifdef __cplusplus
}
#endif
