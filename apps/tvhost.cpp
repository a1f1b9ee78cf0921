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
#include <vector>

#include "UI_App/GuiApp.h"
#include "sim/library_loader.h"
#include "sim/main_loop.h"
#include "sim/sim.h"
#include "tvSys2/entry_points.h"

#if defined(_WIN32)
#include <windows.h>
#include <shellapi.h>
#endif

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

// The command line in UTF-8. Windows hands `main` its arguments in the
// system codepage, which cannot name every folder: they are read wide there.
std::vector<std::string> Utf8Arguments(int argc, char** argv) {
#if defined(_WIN32)
    int count = 0;
    if (LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count)) {
        std::vector<std::string> arguments;
        for (int i = 0; i < count; ++i) arguments.push_back(Utf8(std::filesystem::path(wide[i])));
        LocalFree(wide);
        return arguments;
    }
#endif
    return std::vector<std::string>(argv, argv + argc);
}

bool Parse(const std::vector<std::string>& args, Options& options) {
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--port" && i + 1 < args.size()) {
            const std::string& text = args[++i];
            char* end = nullptr;
            unsigned long port = std::strtoul(text.c_str(), &end, 10);
            if (text.empty() || *end || port > 65535) return false;
            options.port = static_cast<unsigned>(port);
        } else if (arg == "--library" && i + 1 < args.size()) {
            options.library = args[++i];
        } else if (arg == "--files" && i + 1 < args.size()) {
            options.files = args[++i];
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!Parse(Utf8Arguments(argc, argv), options)) {
        std::fprintf(stderr, "usage: %s [--port N] [--library path/to/tvAPIC] [--files folder]\n", argv[0]);
        return 2;
    }
    tvsim_start();
    if (!tvsim_set_files_root(options.files.c_str())) {
        std::fprintf(stderr, "tvhost: --files: the folder's name is not UTF-8\n");
        return 2;
    }
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
