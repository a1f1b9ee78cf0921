// Symbol visibility of the host platform stand-in libraries.
#pragma once

#if defined(_WIN32)
#define TVHOST_EXPORT __declspec(dllexport)
#define TVHOST_IMPORT __declspec(dllimport)
#else
#define TVHOST_EXPORT __attribute__((visibility("default")))
#define TVHOST_IMPORT
#endif

#if defined(TVAPI_BUILDING)
#define TVAPI_API TVHOST_EXPORT
#else
#define TVAPI_API TVHOST_IMPORT
#endif
