#include "tvhost_options.h"

#include <filesystem>
#include <system_error>

std::string TvhostUsage(const std::string& program) {
    return "usage: " + program +
           " [--port N] [--library path/to/tvAPIC] [--files folder]\n"
           "  --port N        the API Server's port, 0 to 65535 (default 8001; 0 picks a free one)\n"
           "  --library path  the tvAPIC library to load (default: the one built or installed with tvhost)\n"
           "  --files folder  an existing folder: the documents clients save and open stay below it\n"
           "                  (default: the system temporary folder)\n";
}

namespace {

// A port is written in decimal digits alone: no sign, no spaces, no base prefix.
bool ReadPort(const std::string& text, unsigned& port) {
    if (text.empty() || text.size() > 5) return false;
    unsigned value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        value = value * 10 + static_cast<unsigned>(c - '0');
    }
    if (value > 65535) return false;
    port = value;
    return true;
}

}  // namespace

std::string ParseTvhostOptions(const std::vector<std::string>& arguments, TvhostOptions& options) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& option = arguments[i];
        if (option == "--help" || option == "-h") {
            options.help = true;
            continue;
        }
        std::string* text = option == "--library" ? &options.library
                            : option == "--files" ? &options.files
                                                  : nullptr;
        if (option != "--port" && !text) return "unknown option '" + option + "'";
        if (i + 1 == arguments.size()) return option + " needs a value";
        const std::string& value = arguments[++i];
        if (text) {
            *text = value;
        } else if (!ReadPort(value, options.port)) {
            return "--port: '" + value + "' is not a port number (0 to 65535)";
        }
    }
    return {};
}

std::string CheckFilesFolder(const std::string& folder) {
    std::filesystem::path path(std::u8string(folder.begin(), folder.end()));
    std::error_code error;
    auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) return "--files: there is no folder " + folder;
    if (!std::filesystem::is_directory(status)) return "--files: " + folder + " is not a folder";
    return {};
}
