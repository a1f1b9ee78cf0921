// tvhost: the demonstration host. It plays the application's part: builds
// the simulated object model, loads libtvAPIC at run time, receives the
// entry object through SetTvAPIC, starts the API Server and runs the main
// thread's message loop until Ctrl-C or SIGTERM, then stops the server
// through the entry object and unloads the library.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "UI_App/GuiApp.h"
#include "sim/library_loader.h"
#include "sim/main_loop.h"
#include "sim/sim.h"
#include "tvSys2/entry_points.h"

namespace {

std::atomic<bool> stop_requested{false};

extern "C" void RequestStop(int) { stop_requested = true; }

std::string Utf8(const std::filesystem::path& path) {
    std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

struct Options {
    unsigned port = 8001;
    std::string library = TVHOST_DEFAULT_LIBRARY;
    // Clients reach the server over the network: the documents they save and
    // open stay below this folder.
    std::string files = Utf8(std::filesystem::temp_directory_path());
};

bool Parse(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--port" && i + 1 < argc) {
            char* end = nullptr;
            unsigned long port = std::strtoul(argv[++i], &end, 10);
            if (*end || port > 65535) return false;
            options.port = static_cast<unsigned>(port);
        } else if (arg == "--library" && i + 1 < argc) {
            options.library = argv[++i];
        } else if (arg == "--files" && i + 1 < argc) {
            options.files = argv[++i];
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!Parse(argc, argv, options)) {
        std::fprintf(stderr, "usage: %s [--port N] [--library path/to/tvAPIC] [--files folder]\n", argv[0]);
        return 2;
    }
    tvsim_start();
    tvsim_set_files_root(options.files.c_str());
    std::string error;
    LoadedLibrary library = LoadLibraryAt(options.library, error);
    if (!library) {
        std::fprintf(stderr, "tvhost: cannot load %s: %s\n", options.library.c_str(), error.c_str());
        return 1;
    }
    tvapic::ITvAPICEntry* entry = tvsys2_standin::RegisteredEntry();
    if (!entry) {
        std::fprintf(stderr, "tvhost: the library registered no entry object\n");
        return 1;
    }

    // The host's answer "no": the port given at start is the one to use.
    ui_app_standin::SetUseStartPort(false);
    entry->Start(static_cast<std::uint16_t>(options.port));
    std::printf("tvhost: API Server on port %u; Ctrl-C stops it\n", options.port);
    std::printf("tvhost: documents are read and written below %s\n", options.files.c_str());
    std::fflush(stdout);

    std::signal(SIGINT, RequestStop);
    std::signal(SIGTERM, RequestStop);
    tvsim::MainLoop loop;
    // Stop waits for the server thread, which may be waiting for this main
    // loop to run a call: the loop keeps running until the stop is through.
    std::thread stopper([&] {
        while (!stop_requested) std::this_thread::sleep_for(std::chrono::milliseconds(50));
        entry->Stop();
        loop.Quit();
    });
    loop.Run();
    stopper.join();

    delete entry;  // the host's to delete; the library's code is still loaded
    UnloadLibrary(library);
    tvsim_stop();
    std::printf("tvhost: stopped\n");
    return 0;
}
