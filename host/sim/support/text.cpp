#include "sim/support/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

namespace tvsim {

tvapi::WString Widen(std::string_view ascii) { return tvapi::WString(ascii.begin(), ascii.end()); }

namespace {

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool IsHigh(char32_t u) { return u >= 0xD800 && u < 0xDC00; }
bool IsLow(char32_t u) { return u >= 0xDC00 && u < 0xE000; }

}  // namespace

std::string ToUtf8(const tvapi::WString& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t u = static_cast<char16_t>(text[i]);
        if (IsHigh(u) && i + 1 < text.size() && IsLow(static_cast<char16_t>(text[i + 1]))) {
            char32_t low = static_cast<char16_t>(text[++i]);
            AppendUtf8(out, 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00));
        } else if (IsHigh(u) || IsLow(u)) {
            AppendUtf8(out, 0xFFFD);
        } else {
            AppendUtf8(out, u);
        }
    }
    return out;
}

bool FromUtf8(std::string_view bytes, tvapi::WString& out) {
    tvapi::WString text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        auto lead = static_cast<unsigned char>(bytes[i]);
        int extra = lead < 0x80 ? 0 : lead >= 0xC2 && lead < 0xE0 ? 1 : lead >= 0xE0 && lead < 0xF0 ? 2
                  : lead >= 0xF0 && lead < 0xF5                     ? 3
                                                                    : -1;
        if (extra < 0 || bytes.size() - i < static_cast<std::size_t>(extra) + 1) return false;
        char32_t c = extra == 0 ? lead : lead & (0x3F >> extra);
        for (int k = 1; k <= extra; ++k) {
            auto next = static_cast<unsigned char>(bytes[i + k]);
            if ((next & 0xC0) != 0x80) return false;
            c = (c << 6) | (next & 0x3F);
        }
        static constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
        if (c < kSmallest[extra] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return false;
        if (c >= 0x10000) {
            text += static_cast<tvapi::WChar>(0xD800 + ((c - 0x10000) >> 10));
            text += static_cast<tvapi::WChar>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            text += static_cast<tvapi::WChar>(c);
        }
        i += 1 + extra;
    }
    out = std::move(text);
    return true;
}

std::string FormatNumber(double value) {
    char buffer[32];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    if (error != std::errc()) return "0";
    return std::string(buffer, end);
}

tvapi::WString FormatNumberText(double value) { return Widen(FormatNumber(value)); }

bool ParseNumber(std::string_view token, double& value) {
    double parsed = 0.0;
    auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), parsed);
    if (error != std::errc() || end != token.data() + token.size() || token.empty()) return false;
    value = parsed;
    return true;
}

bool ParseInt(std::string_view token, int& value) {
    int parsed = 0;
    auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), parsed);
    if (error != std::errc() || end != token.data() + token.size() || token.empty()) return false;
    value = parsed;
    return true;
}

std::filesystem::path ToPath(const tvapi::WString& path) {
    try {
        return std::filesystem::path(path);
    } catch (const std::exception&) {
        return std::filesystem::path();  // an unpaired surrogate names no POSIX file
    }
}

tvapi::WString FromPath(const std::filesystem::path& path) {
    try {
        return path.string<tvapi::WString::value_type, tvapi::WString::traits_type>();
    } catch (const std::exception&) {
        return tvapi::WString();  // a POSIX name that is not UTF-8 is no text
    }
}

tvapi::WString FileNamePart(const tvapi::WString& path) {
    auto cut = path.find_last_of(TVAPI_TEXT("/\\"));
    return cut == tvapi::WString::npos ? path : path.substr(cut + 1);
}

tvapi::WString FolderPart(const tvapi::WString& path) {
    auto cut = path.find_last_of(TVAPI_TEXT("/\\"));
    return cut == tvapi::WString::npos ? tvapi::WString() : path.substr(0, cut + 1);
}

namespace {
tvapi::WString current_folder;
std::filesystem::path files_root;  // empty: no limit

// The path made absolute, with links and ".." resolved as far as it exists.
std::filesystem::path Resolved(const std::filesystem::path& path, std::error_code& error) {
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? std::filesystem::path() : std::filesystem::weakly_canonical(absolute, error);
}

void ReportRefused(const std::filesystem::path& file) {
    std::u8string name = file.u8string(), root = files_root.u8string();
    std::fprintf(stderr, "simulated host: refused %s: it is not below the files root %s\n",
                 reinterpret_cast<const char*>(name.c_str()), reinterpret_cast<const char*>(root.c_str()));
    std::fflush(stderr);
}

// The file `path` names (a relative path against the current directory),
// when it lies below the files root (symbolic links and ".." resolved);
// nothing for an empty path, one outside the root (reported unless `quiet`),
// or text that names no file on this system.
std::optional<std::filesystem::path> Accessible(const tvapi::WString& path, bool quiet = false) {
    std::filesystem::path file = ToPath(AgainstCurrentFolder(path));
    if (file.empty()) return std::nullopt;
    if (files_root.empty()) return file;
    std::error_code error;
    std::filesystem::path resolved = Resolved(file, error);
    auto [in_root, in_path] = std::mismatch(files_root.begin(), files_root.end(), resolved.begin(), resolved.end());
    // Below the root, not the root itself.
    if (error || in_root != files_root.end() || in_path == resolved.end()) {
        if (!quiet) ReportRefused(file);
        return std::nullopt;
    }
    return file;
}

bool IsRegularFile(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}
}  // namespace

void SetCurrentFolder(const tvapi::WString& folder) { current_folder = folder; }

const tvapi::WString& CurrentFolder() { return current_folder; }

// Joined as text, with the separator the folder is written with: a client
// reads the path back as it wrote the folder.
tvapi::WString AgainstCurrentFolder(const tvapi::WString& path) {
    std::filesystem::path file = ToPath(path);
    // "/plans/a.tvd" is relative on Windows, to the current drive: it is kept.
    if (file.empty() || file.has_root_name() || file.has_root_directory() || current_folder.empty()) return path;
    auto last = current_folder.find_last_of(TVAPI_TEXT("/\\"));
    tvapi::WChar separator = last == tvapi::WString::npos
                                 ? static_cast<tvapi::WChar>(std::filesystem::path::preferred_separator)
                                 : current_folder[last];
    if (last != tvapi::WString::npos && last + 1 == current_folder.size()) return current_folder + path;
    return current_folder + separator + path;
}

void SetFilesRoot(const std::filesystem::path& root) {
    std::error_code error;
    files_root = root.empty() ? root : Resolved(root, error);
    // A root that does not resolve still confines: to itself, as written.
    if (error) files_root = root.lexically_normal();
}

bool IsFile(const tvapi::WString& path) {
    auto file = Accessible(path);
    return file && IsRegularFile(*file);
}

bool IsFree(const tvapi::WString& path) {
    auto file = Accessible(path, true);  // asked before a read, which reports
    std::error_code error;
    return file && !std::filesystem::exists(*file, error) && !error;
}

bool RemoveFile(const tvapi::WString& path) {
    auto file = Accessible(path);
    if (!file) return false;
    std::error_code error;
    std::filesystem::remove(*file, error);
    return !error;
}

bool ReadWholeFile(const tvapi::WString& path, std::string& bytes) {
    auto file = Accessible(path);
    if (!file || !IsRegularFile(*file)) return false;
    std::ifstream in(*file, std::ios::binary);
    if (!in) return false;
    std::string read((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) return false;
    bytes = std::move(read);
    return true;
}

bool WriteWholeFile(const tvapi::WString& path, const std::string& bytes) {
    auto target = Accessible(path);
    if (!target) return false;
    std::filesystem::path partial = *target;
    partial += ".partial";
    {
        std::ofstream out(partial, std::ios::binary | std::ios::trunc);
        if (!out) return false;
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            out.close();
            std::error_code ignored;
            std::filesystem::remove(partial, ignored);
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(partial, *target, error);
    if (error) {
        std::filesystem::remove(partial, error);
        return false;
    }
    return true;
}

}  // namespace tvsim
