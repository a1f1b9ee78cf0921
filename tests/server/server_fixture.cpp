#include "server/server_fixture.h"

#include <chrono>
#include <cstring>
#include <functional>

#include "UI_App/GuiApp.h"
#include "shell/library_loader.h"

#if defined(_WIN32)
#include <windows.h>
#include <psapi.h>
#include <io.h>
#define dup _dup
#define dup2 _dup2
#define fileno _fileno
#define close _close
#else
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace server_test {

namespace asio = boost::asio;
using asio::ip::tcp;

std::uint16_t FreePort() {
    asio::io_context io;
    tcp::acceptor probe(io, tcp::endpoint(asio::ip::address_v4::loopback(), 0));
    return probe.local_endpoint().port();
}

std::string Call(std::uint16_t port, const std::string& request) {
    return CallWithin(port, request, std::chrono::minutes(2)).value();  // longer than a test may run
}

std::optional<std::string> CallWithin(std::uint16_t port, const std::string& request, std::chrono::milliseconds limit,
                                      bool half_close) {
    asio::io_context io;
    tcp::socket socket(io);
    socket.connect(tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port));
    // The server may close before taking every byte (a name it does not
    // know, a stopping server): what it answers is read all the same.
    boost::system::error_code ignored;
    asio::write(socket, asio::buffer(request), ignored);
    // Nothing more will come: a request cut short then ends in a read error.
    if (half_close) socket.shutdown(tcp::socket::shutdown_send, ignored);
    std::string response;
    bool closed = false;
    char buffer[4096];
    std::function<void(boost::system::error_code, std::size_t)> on_read = [&](boost::system::error_code error,
                                                                               std::size_t n) {
        response.append(buffer, n);
        if (error) closed = true;  // end of stream, or a reset after the response
        else socket.async_read_some(asio::buffer(buffer), on_read);
    };
    socket.async_read_some(asio::buffer(buffer), on_read);
    io.run_for(limit);
    if (closed) return response;
    return std::nullopt;
}

std::vector<std::unique_ptr<tcp::socket>> Connect(asio::io_context& io, std::uint16_t port, int count) {
    std::vector<std::unique_ptr<tcp::socket>> sockets;
    for (int i = 0; i < count; ++i) {
        sockets.push_back(std::make_unique<tcp::socket>(io));
        sockets.back()->connect(tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port));
    }
    return sockets;
}

std::size_t PeakMemoryKiB() {
#if defined(_WIN32)
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakWorkingSetSize / 1024;
#else
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss);  // KiB on Linux
#endif
}

template <class T>
static std::string Bytes(T v) {
    std::string out(sizeof v, '\0');
    std::memcpy(out.data(), &v, sizeof v);
    return out;
}

std::string U64(std::uint64_t v) { return Bytes(v); }
std::string I32(std::int32_t v) { return Bytes(v); }
std::string F64(double v) { return Bytes(v); }
std::string Text(const std::string& utf8) { return U64(utf8.size()) + utf8; }

StderrCapture::StderrCapture() : file_(std::tmpfile()) {
    std::fflush(stderr);
    saved_ = dup(fileno(stderr));
    dup2(fileno(file_), fileno(stderr));
}

StderrCapture::~StderrCapture() {
    std::fflush(stderr);
    dup2(saved_, fileno(stderr));
    close(saved_);
    std::fclose(file_);
}

std::string StderrCapture::Text() {
    std::fflush(stderr);
    std::string out;
    std::rewind(file_);
    char buffer[512];
    while (std::size_t n = std::fread(buffer, 1, sizeof buffer, file_)) out.append(buffer, n);
    return out;
}

tvapic::ITvAPICEntry* LoadedEntry() {
    // Loaded as the application loads it, once per test process.
    static LoadedLibrary library = [] {
        std::string error;
        LoadedLibrary loaded = LoadLibraryAt(TVAPIC_LIBRARY_PATH, error);
        if (!loaded) std::fprintf(stderr, "cannot load %s: %s\n", TVAPIC_LIBRARY_PATH, error.c_str());
        return loaded;
    }();
    return library ? tvsys2_standin::RegisteredEntry() : nullptr;
}

bool Listening(std::uint16_t port) {
    asio::io_context io;
    tcp::socket probe(io);
    boost::system::error_code error;
    probe.connect(tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port), error);
    // A connection to a free port of the ephemeral range can meet itself
    // (TCP simultaneous open): that is nobody listening.
    return !error && probe.local_endpoint(error) != probe.remote_endpoint(error);
}

bool WaitUntilServing(std::uint16_t port) {
    for (int attempt = 0; attempt < 200; ++attempt) {
        try {
            // An empty name matches nothing: a served call answers nothing
            // (a connection that met itself would echo the request).
            if (Call(port, U64(0)).empty()) return true;
        } catch (const boost::system::system_error&) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

std::uint16_t StartOnFreePort(tvapic::ITvAPICEntry* entry) {
    std::uint16_t port = FreePort();
    ui_app_standin::SetUseStartPort(false);
    entry->Start(port);
    return WaitUntilServing(port) ? port : 0;
}

void ServerTest::SetUp() {
    ASSERT_NE(LoadedEntry(), nullptr);
    main_thread_ = std::thread([this] { loop_.Run(); });
    port_ = StartOnFreePort(entry());
    ASSERT_NE(port_, 0) << "the API Server did not start";
}

void ServerTest::TearDown() {
    entry()->Stop();
    loop_.Quit();
    main_thread_.join();
}

}  // namespace server_test
