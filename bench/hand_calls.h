// The baselines of the call-frame benchmarks: the host calls an export
// makes, written out by hand in C++ as a careful caller would: the query
// with a fresh copy of the IID text, AddRef, the operation, Release, and
// the same allocation for what is handed back. Built as a shared library,
// like the exports: with the same calls between modules on both paths, the
// difference left is the frame's. (Placed in the benchmark program, next to
// the host, the same hand-written calls ran up to a quarter faster.)
#pragma once

#include "tvAPIC.h"

namespace bench::hand {

int GetLayerNumber(void* drawing);                             // IDrawingObject_GetLayerNumber
tvWChar* GetName(void* document);                              // ITavraDocument_GetName
void* GetCurve2D(void* drawing);                               // IDrawingObject_GetCurve2D
bool PointOn(void* curve, double t, double* x, double* y);     // ICurve2D_PointOn
DoubleVector_t* CalculatePolygon(void* curve, double tolerance);  // ICurve2D_CalculatePolygon

}  // namespace bench::hand
