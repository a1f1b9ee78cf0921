#include "server/connection.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "server/call.h"
#include "server/decoder.h"

namespace tvapic::server {

namespace {
constexpr std::size_t kReadPiece = 64 * 1024;
}  // namespace

Request ReadRequest(ByteStream& connection) {
    std::string bytes;
    for (;;) {
        Decoded decoded = Decode(bytes);
        if (auto* request = std::get_if<Request>(&decoded)) return std::move(*request);
        if (auto* error = std::get_if<DecodeError>(&decoded)) throw std::runtime_error(error->what);
        std::size_t total = std::get<NeedBytes>(decoded).total;
        while (bytes.size() < total) {
            std::size_t had = bytes.size();
            bytes.resize(had + std::min(kReadPiece, total - had));
            connection.ReadExact(bytes.data() + had, bytes.size() - had);
        }
    }
}

void ServeConnection(ByteStream& connection, const MainThreadRunner& run_on_main_thread) {
    Request request = ReadRequest(connection);
    if (request.function) {
        Call call(std::move(request));
        if (run_on_main_thread([&call] { call.Run(); })) {
            std::string response = call.Response();
            if (!response.empty()) connection.WriteExact(response.data(), response.size());
        }
    }
    connection.Close();
}

}  // namespace tvapic::server
