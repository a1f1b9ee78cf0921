// Loads and unloads libtvAPIC as the host does, and checks what the host
// system library saw: one entry object on load, null on unload.
// Platform file (POSIX dynamic loading).
#include <dlfcn.h>

#include <cstdio>

#include "tvSys2/entry_points.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s path/to/libtvAPIC.so\n", argv[0]);
        return 2;
    }
    int failures = 0;
    auto expect = [&](bool ok, const char* what) {
        if (!ok) {
            std::fprintf(stderr, "FAILED: %s\n", what);
            ++failures;
        }
    };
    expect(tvsys2_standin::RegisteredEntry() == nullptr, "nothing registered before loading");
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::fprintf(stderr, "dlopen: %s\n", dlerror());
        return 1;
    }
    expect(tvsys2_standin::ObjectRegistrations() == 1, "one entry object registered on load");
    expect(tvsys2_standin::RegisteredEntry() != nullptr, "the entry object is held by the host");
    expect(dlsym(library, "IDocuments_Open") != nullptr, "exports resolve");
    // The entry object is the host's: the library never deletes it. A host
    // that is done with it deletes it, through its virtual destructor, while
    // the library's code is still loaded.
    delete tvsys2_standin::RegisteredEntry();
    dlclose(library);
    expect(tvsys2_standin::NullRegistrations() == 1, "null registered on unload");
    expect(tvsys2_standin::RegisteredEntry() == nullptr, "the registration is withdrawn");
    std::printf("load/unload: %s\n", failures ? "FAILED" : "ok");
    return failures ? 1 : 0;
}
