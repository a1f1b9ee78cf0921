// The host unloads the library while its API Server still runs (it never
// called stop). The server thread runs the library's code, so the library
// must stay: the next client is served and the process lives.
#include <cstdio>
#include <cstdint>
#include <string>

#include "UI_App/GuiApp.h"
#include "server/asio.h"
#include "shell/library_loader.h"
#include "tvSys2/entry_points.h"

namespace asio = boost::asio;
using asio::ip::tcp;

// One request, sent whole; what comes back until the server closes.
static std::string Call(std::uint16_t port, const std::string& request) {
    asio::io_context io;
    tcp::socket socket(io);
    socket.connect(tcp::endpoint(asio::ip::make_address_v4("127.0.0.1"), port));
    asio::write(socket, asio::buffer(request));
    socket.shutdown(tcp::socket::shutdown_send);
    std::string response;
    char buffer[256];
    boost::system::error_code end;
    while (std::size_t n = socket.read_some(asio::buffer(buffer), end)) response.append(buffer, n);
    return response;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s path/to/tvAPIC-library\n", argv[0]);
        return 2;
    }
    std::string error;
    LoadedLibrary library = LoadLibraryAt(argv[1], error);
    if (!library) {
        std::fprintf(stderr, "cannot load %s: %s\n", argv[1], error.c_str());
        return 1;
    }
    asio::io_context io;
    std::uint16_t port = tcp::acceptor(io, tcp::endpoint(asio::ip::address_v4::loopback(), 0)).local_endpoint().port();
    ui_app_standin::SetUseStartPort(false);
    tvsys2_standin::RegisteredEntry()->Start(port);

    UnloadLibrary(library);  // without a stop
    // An empty name and an unknown one: both are answered with nothing, by
    // the server thread alone, once it listens.
    const std::string empty_name(8, '\0');
    std::string answers = "not served";
    for (int attempt = 0; attempt < 200 && answers != ""; ++attempt) {
        try {
            answers = Call(port, empty_name) + Call(port, std::string("\x04\0\0\0\0\0\0\0nope", 12));
        } catch (const boost::system::system_error&) {
        }
    }
    std::printf("unload while serving: %s\n", answers.empty() ? "served" : "NOT SERVED");
    return answers.empty() ? 0 : 1;
}
