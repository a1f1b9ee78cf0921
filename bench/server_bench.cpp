// The API Server over loopback: IDrawingObject_GetLayerNumber, one
// call per connection, a client calling back to back so the server is never
// idle for long, against the bare server (loopback.h) in the same run; four
// such clients at once against one; and the main thread's share of a call.
//
// The library is loaded and started as the host does (see the API Server
// tests); a simulated main loop runs the calls the server hands over. The
// drawing object handle is one the API Server gave out: the fast application's
// active document, which also answers IDrawingObject.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "UI_App/GuiApp.h"
#include "fast_host.h"
#include "loopback.h"
#include "shell/library_loader.h"
#include "tvEventsBus/EventsBus.h"
#include "tvSys2/entry_points.h"
#include "tvAPIC.h"
#include "tvapi/accessor_setters.h"

namespace {

std::string U64(std::uint64_t v) { return std::string(reinterpret_cast<const char*>(&v), sizeof v); }
std::string I32(std::int32_t v) { return std::string(reinterpret_cast<const char*>(&v), sizeof v); }
std::string Name(const std::string& name) { return U64(name.size()) + name; }

// The library's API Server with the fast host behind it, for the whole run.
class RunningServer {
public:
    RunningServer() : document_(bench::NewFastObject()), application_(bench::NewFastApplication(document_)) {
        std::string error;
        library_ = LoadLibraryAt(TVAPIC_LIBRARY_PATH, error);
        if (!library_) {
            std::fprintf(stderr, "cannot load %s: %s\n", TVAPIC_LIBRARY_PATH, error.c_str());
            return;
        }
        tvapi_standin::SetApplication(application_);
        ui_app_standin::SetUseStartPort(false);  // "no": the given port is used
        port_ = bench::FreePort();
        entry()->Start(port_);
        main_thread_ = std::thread([this] { MainLoop(); });
        serving_ = WaitUntilServing();
        request_ = Name("IDrawingObject_GetLayerNumber") + (serving_ ? GivenDocument() : U64(0));
    }
    ~RunningServer() {
        if (main_thread_.joinable()) {
            entry()->Stop();
            quit_ = true;
            main_thread_.join();
        }
        tvapi_standin::SetApplication(nullptr);
        bench::DeleteFastApplication(application_);
        // Handles sent to a client keep their reference (there is no remote
        // release): those are given back here, then our own.
        auto* document = static_cast<tvapi::IAPIObject*>(document_);
        while (bench::ReferenceCount(document_) > 1) document->Release();
        document->Release();
    }

    bool serving() const { return serving_; }
    LoadedLibrary library() const { return library_; }
    // The handle the measured request names.
    void* document() const {
        std::uint64_t handle = 0;
        std::memcpy(&handle, request_.data() + request_.size() - sizeof handle, sizeof handle);
        return reinterpret_cast<void*>(static_cast<std::uintptr_t>(handle));
    }
    // The main thread's time in the calls it ran, and how many, since the last reset.
    void ResetMainThreadTime() {
        main_thread_ns_ = 0;
        main_thread_calls_ = 0;
    }
    double MainThreadMicrosPerCall() const {
        return main_thread_calls_ ? main_thread_ns_ / 1e3 / main_thread_calls_ : 0;
    }
    std::uint16_t port() const { return port_; }
    // The measured request: the name and a handle the API Server handed out.
    const std::string& request() const { return request_; }

private:
    static tvapic::ITvAPICEntry* entry() { return tvsys2_standin::RegisteredEntry(); }

    bool WaitUntilServing() {
        for (int attempt = 0; attempt < 200; ++attempt) {
            try {
                // An empty name is served with no answer at all.
                if (bench::LoopbackClient(port_).Call(U64(0)).empty()) return true;
            } catch (const boost::system::system_error&) {
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
    std::string GivenDocument() {
        std::string handle = bench::LoopbackClient(port_).Call(Name("IApplication_GetActiveDocument"));
        return handle.size() == 8 ? handle : U64(0);
    }

    void* document_;
    tvapi::IApplication* application_;
    std::uint16_t port_ = 0;
    bool serving_ = false;
    std::string request_;
    LoadedLibrary library_ = nullptr;
    std::thread main_thread_;
    std::atomic<bool> quit_{false};
    std::atomic<std::int64_t> main_thread_ns_{0};
    std::atomic<std::int64_t> main_thread_calls_{0};

    // The host's main thread: runs each posted call and times it.
    void MainLoop() {
        using Clock = std::chrono::steady_clock;
        while (!quit_) {
            tveventsbus_standin::Message m;
            if (!tveventsbus_standin::WaitMessage(m, std::chrono::milliseconds(50)) || m.message != 1627) continue;
            auto start = Clock::now();
            entry()->Run(m.value);
            main_thread_ns_ += std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start).count();
            ++main_thread_calls_;
        }
    }
};

RunningServer* server = nullptr;

struct Server {
    explicit Server(const char* n) : name(n) {}
    const char* name;
    std::vector<double> us;            // each call's latency
    std::vector<double> calls_per_s;  // each block's
};

constexpr int kCallsPerBlock = 25;

// A block of calls back to back. False when a call went unanswered.
bool Block(bench::LoopbackClient& client, Server& server, const std::string& request, std::vector<double>& pair) {
    using Clock = std::chrono::steady_clock;
    auto block_start = Clock::now();
    for (int i = 0; i < kCallsPerBlock; ++i) {
        auto start = Clock::now();
        if (client.Call(request).size() != 4) return false;
        server.us.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    double block_us = std::chrono::duration<double, std::micro>(Clock::now() - block_start).count();
    server.calls_per_s.push_back(1e6 * kCallsPerBlock / block_us);
    pair.push_back(block_us);
    return true;
}

double Percentile(std::vector<double>& v, int percent) {
    std::sort(v.begin(), v.end());
    return v[v.size() * percent / 100];
}

// Blocks of calls to the library's server and to the bare server in turn
// (which goes first alternates), so that both see the same machine.
void ApiServer(benchmark::State& state) {
    if (!server->serving()) return state.SkipWithError("the API Server did not start");
    static bench::BareServer bare_server;
    const std::string& request = server->request();
    bench::LoopbackClient library_client(server->port());
    bench::LoopbackClient bare_client(bare_server.port());
    if (library_client.Call(request) != I32(bench::kLayerNumber)) return state.SkipWithError("the host was not reached");
    Server library("library"), bare("bare");
    std::vector<double> ratios;  // calls per second, library over bare, per pair of blocks
    bool bare_first = false;
    for (auto _ : state) {
        std::vector<double> pair;
        bool answered = bare_first ? Block(bare_client, bare, request, pair) && Block(library_client, library, request, pair)
                                   : Block(library_client, library, request, pair) && Block(bare_client, bare, request, pair);
        if (!answered) return state.SkipWithError("a call went unanswered");
        ratios.push_back(bare_first ? pair[0] / pair[1] : pair[1] / pair[0]);
        bare_first = !bare_first;
    }
    for (Server* s : {&library, &bare}) {
        std::string name = s->name;
        state.counters[name + "_calls_per_s"] = Percentile(s->calls_per_s, 50);
        state.counters[name + "_p50_us"] = Percentile(s->us, 50);
        state.counters[name + "_p99_us"] = Percentile(s->us, 99);
    }
    state.counters["ratio"] = Percentile(ratios, 50);
}


// Blocks of calls from four clients at once (each back to back, on a thread
// of its own) and from one client in turn: the total calls per second of
// each, and their ratio, pair by pair.
void FourClients(benchmark::State& state) {
    if (!server->serving()) return state.SkipWithError("the API Server did not start");
    constexpr int kClients = 4, kCallsEach = 100;
    const std::string& request = server->request();
    auto block = [&](int clients) {
        std::atomic<bool> answered{true};
        auto start = std::chrono::steady_clock::now();
        std::vector<std::thread> threads;
        for (int c = 0; c < clients; ++c) {
            threads.emplace_back([&] {
                bench::LoopbackClient client(server->port());
                for (int i = 0; i < kCallsEach; ++i) {
                    if (client.Call(request).size() != 4) answered = false;
                }
            });
        }
        for (auto& t : threads) t.join();
        double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return answered ? clients * kCallsEach / s : 0.0;
    };
    std::vector<double> one, four, ratios;
    bool four_first = false;
    for (auto _ : state) {
        double f = four_first ? block(kClients) : 0, o = block(1);
        if (!four_first) f = block(kClients);
        four_first = !four_first;
        if (o == 0 || f == 0) return state.SkipWithError("a call went unanswered");
        one.push_back(o);
        four.push_back(f);
        ratios.push_back(f / o);
    }
    state.counters["one_client_calls_per_s"] = Percentile(one, 50);
    state.counters["four_clients_calls_per_s"] = Percentile(four, 50);
    state.counters["ratio"] = Percentile(ratios, 50);
}


// The main thread's share of one remote call, in microseconds: the time it
// spends in the posted call (the export and the handing back of its result),
// beside the export's own time called directly.
struct MainThreadCase {
    std::string request;
    std::function<void()> export_alone;
};

double MicrosPerCall(int calls, const std::function<void()>& call) {
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < calls; ++i) call();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count() / calls;
}

void MainThread(benchmark::State& state, const MainThreadCase& c) {
    if (!server->serving()) return state.SkipWithError("the API Server did not start");
    constexpr int kCalls = 200;
    bench::LoopbackClient client(server->port());
    std::vector<double> posted, alone;
    for (auto _ : state) {
        server->ResetMainThreadTime();
        for (int i = 0; i < kCalls; ++i) client.Call(c.request);
        posted.push_back(server->MainThreadMicrosPerCall());
        alone.push_back(MicrosPerCall(kCalls, c.export_alone));
    }
    state.counters["main_thread_us"] = Percentile(posted, 50);
    state.counters["export_us"] = Percentile(alone, 50);
    state.counters["overhead_us"] = Percentile(posted, 50) - Percentile(alone, 50);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RegisterBenchmark("server/get_layer_number", ApiServer)->UseRealTime();
    benchmark::RegisterBenchmark("server/four_clients", FourClients)->UseRealTime();
    auto running = std::make_unique<RunningServer>();
    server = running.get();

    // A scalar getter, and a 64 KiB text argument.
    using GetLayerNumber = int (*)(void*);
    using SetCurrentDirectory = void (*)(const tvWChar*);
    static auto get_layer = reinterpret_cast<GetLayerNumber>(LibrarySymbol(server->library(), "IDrawingObject_GetLayerNumber"));
    static auto set_directory =
        reinterpret_cast<SetCurrentDirectory>(LibrarySymbol(server->library(), "IApplication_SetCurrentDirectory"));
    static const std::basic_string<tvWChar> text(64 * 1024, tvWChar('d'));
    static const MainThreadCase scalar{server->request(), [] { benchmark::DoNotOptimize(get_layer(server->document())); }};
    static const MainThreadCase long_text{Name("IApplication_SetCurrentDirectory") + Name(std::string(64 * 1024, 'd')),
                                          [] { set_directory(text.c_str()); }};
    benchmark::RegisterBenchmark("main_thread/scalar_getter", MainThread, scalar)->Iterations(5);
    benchmark::RegisterBenchmark("main_thread/text_64k", MainThread, long_text)->Iterations(5);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
