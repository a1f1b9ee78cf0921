// Platform file (POSIX, dlopen): loading the library as the host does, with
// lazy binding, resolving one export and unloading it again, paired with the
// same for a library of one function. The host's own libraries (tvapi,
// tvSys2, ...) are linked in: the host has them loaded before tvAPIC.
#include <benchmark/benchmark.h>

#include <dlfcn.h>

#include "paired.h"
#include "tvSys2/entry_points.h"

namespace {

// False when the library did not load or lacks the export.
bool LoadAndResolve(const char* path, const char* symbol) {
    void* library = dlopen(path, RTLD_LAZY | RTLD_LOCAL);
    if (!library) return false;
    void* const found = dlsym(library, symbol);
    benchmark::DoNotOptimize(found);
    // The entry object tvAPIC registered on load is the host's: the host
    // deletes it while the library is loaded (the one-function library
    // registers none).
    delete tvsys2_standin::RegisteredEntry();
    dlclose(library);
    return found != nullptr;
}

bool Unloaded(const char* path) {
    void* still = dlopen(path, RTLD_LAZY | RTLD_NOLOAD);
    if (still) dlclose(still);
    return still == nullptr;
}

void Load(benchmark::State& state) {
    const char* const library = TVAPIC_LIBRARY_PATH;
    const char* const minimal = MINIMAL_LIBRARY_PATH;
    if (!LoadAndResolve(library, "IDrawingObject_GetLayerNumber") || !LoadAndResolve(minimal, "minimal_export")) {
        return state.SkipWithError("a library did not load or lacks the export");
    }
    // A library that stayed mapped would load for free from then on.
    if (!Unloaded(library) || !Unloaded(minimal)) return state.SkipWithError("a library stayed loaded");
    bench::RunPaired(
        state, 1, [library] { LoadAndResolve(library, "IDrawingObject_GetLayerNumber"); },
        [minimal] { LoadAndResolve(minimal, "minimal_export"); });
}

const int registered = [] {
    benchmark::RegisterBenchmark("load/dlopen_and_resolve", Load);
    return 0;
}();

}  // namespace

BENCHMARK_MAIN();
