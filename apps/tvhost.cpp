// tvhost: the demonstration host. It plays the application's part: builds
// the simulated object model, loads libtvAPIC at run time, receives the
// entry object through SetTvAPIC, starts the API Server and runs the main
// thread's message loop until Ctrl-C or SIGTERM, then stops the server
// through the entry object and unloads the library.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "UI_App/GuiApp.h"
#include "listening.h"
#include "shell/library_loader.h"
#include "shell/main_loop.h"
#include "sim/sim.h"
#include "tvSys2/entry_points.h"
#include "tvhost_options.h"

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

// The library tvhost loads unless told otherwise: installed, the one in the
// installation's library folder; else the one built beside it.
std::string DefaultLibrary() {
#if defined(TVHOST_INSTALLED_LIBRARY) && !defined(_WIN32)
    std::error_code error;
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        std::filesystem::path installed = program.parent_path() / TVHOST_INSTALLED_LIBRARY;
        if (std::filesystem::is_regular_file(installed, error)) return Utf8(installed);
    }
#endif
    return TVHOST_DEFAULT_LIBRARY;
}

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

int Refuse(const std::string& program, const std::string& why) {
    std::fprintf(stderr, "tvhost: %s\n%s", why.c_str(), TvhostUsage(program).c_str());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments = Utf8Arguments(argc, argv);
    std::string program = arguments.empty() ? "tvhost" : arguments.front();
    if (!arguments.empty()) arguments.erase(arguments.begin());
    TvhostOptions options;
    options.library = DefaultLibrary();
    options.files = Utf8(std::filesystem::temp_directory_path());
    std::string mistake = ParseTvhostOptions(arguments, options);
    if (!mistake.empty()) return Refuse(program, mistake);
    if (options.help) {
        std::printf("%s", TvhostUsage(program).c_str());
        return 0;
    }
    tvsim_start();
    if (!tvsim_set_files_root(options.files.c_str())) return Refuse(program, "--files: the folder's name is not UTF-8");
    if (std::string why = CheckFilesFolder(options.files); !why.empty()) return Refuse(program, why);

    // The server's own failure to bind would only be written to standard
    // error, with tvhost running on: the port is tried here first.
    std::string error;
    std::uint16_t port = ReservePort(static_cast<std::uint16_t>(options.port), error);
    if (!port) {
        std::fprintf(stderr, "tvhost: cannot listen on port %u: %s\n", options.port, error.c_str());
        return 1;
    }

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
    entry->Start(port);
    if (!ConfirmListening(port, 5.0)) {
        // The server thread has ended on its own, having said why: there is
        // no server to stop, and nothing to unload in order.
        std::fprintf(stderr, "tvhost: the API Server does not listen on port %u\n", port);
        std::fflush(stderr);
        std::_Exit(1);
    }
    // Announced only now: a client that reads this line can connect.
    std::printf("tvhost: API Server on port %u; Ctrl-C stops it\n", port);
    std::printf("tvhost: documents are read and written below %s\n", options.files.c_str());
    std::fflush(stdout);

    std::signal(SIGINT, RequestStop);
    std::signal(SIGTERM, RequestStop);
    tvshell::MainLoop loop;
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
