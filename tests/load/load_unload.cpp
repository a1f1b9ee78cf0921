// Loads and unloads tvAPIC as the host does, and checks what the host system
// library saw: one entry object on load, null on unload. A thread started and
// joined while the library is loaded (on Windows, thread attach and detach
// notifications to its entry point) changes nothing.
#include <cstdio>
#include <string>
#include <thread>

#include "shell/library_loader.h"
#include "tvSys2/entry_points.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s path/to/tvAPIC-library\n", argv[0]);
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
    std::string error;
    LoadedLibrary library = LoadLibraryAt(argv[1], error);
    if (!library) {
        std::fprintf(stderr, "cannot load %s: %s\n", argv[1], error.c_str());
        return 1;
    }
    tvapic::ITvAPICEntry* entry = tvsys2_standin::RegisteredEntry();
    expect(tvsys2_standin::ObjectRegistrations() == 1, "one entry object registered on load");
    expect(entry != nullptr, "the entry object is held by the host");
    expect(LibrarySymbol(library, "IDocuments_Open") != nullptr, "exports resolve");

    std::thread([] {}).join();
    expect(tvsys2_standin::ObjectRegistrations() == 1 && tvsys2_standin::NullRegistrations() == 0,
           "a thread's start and end register nothing");
    expect(tvsys2_standin::RegisteredEntry() == entry, "the entry object stays registered across a thread");

    // The entry object is the host's: the library never deletes it. A host
    // that is done with it deletes it, through its virtual destructor, while
    // the library's code is still loaded.
    delete entry;
    expect(UnloadLibrary(library), "the library unloads");
    expect(tvsys2_standin::NullRegistrations() == 1, "null registered on unload");
    expect(tvsys2_standin::ObjectRegistrations() == 1, "no second entry object on unload");
    expect(tvsys2_standin::RegisteredEntry() == nullptr, "the registration is withdrawn");
    std::printf("load/unload: %s\n", failures ? "FAILED" : "ok");
    return failures ? 1 : 0;
}
