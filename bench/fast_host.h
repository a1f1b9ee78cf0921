// A cheap stand-in host for the benchmarks: objects whose operations return
// constants, so that what is timed is the call path, not the host. (The
// probes record every call as text and are far too slow to be a baseline.)
//
// The objects' classes stay inside fast_host.cpp: callers see handles and
// interface pointers only, so no benchmark can devirtualise a host call.
#pragma once

#include "tvapi/application.h"
#include "tvapi/core.h"
#include "tvapi/drawing.h"

namespace bench {

// What the fast objects answer.
constexpr int kLayerNumber = 7;
constexpr double kPointX = 1.5;
constexpr double kPointY = 2.5;
constexpr int kPolygonValues = 16;  // CalculatePolygon: eight points

// A new object answering ITavraDocument, IDrawingObject and ICurve2D (and
// IAPIObject), held by the caller's one reference; the last Release deletes
// it. The handle is its IAPIObject face, as a C caller holds it.
void* NewFastObject();

// A root application whose GetActiveDocument answers `document` (a handle
// from NewFastObject, which the application keeps a reference to). Owned by
// the caller, who deletes it with DeleteFastApplication once uninstalled.
tvapi::IApplication* NewFastApplication(void* document);
void DeleteFastApplication(tvapi::IApplication* application);

// The object's reference count, for checking that a benchmark left it as it was.
int ReferenceCount(void* handle);

}  // namespace bench
