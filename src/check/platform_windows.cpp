// Platform file (Windows): checked mode's environment, output and thread
// numbers. Only kernel32 is used, since the lines at unload are written
// from DllMain, where the C runtime may already be gone.
#include <windows.h>

#include <string>

#include "check/platform.h"

namespace tvapic::check::platform {
namespace {

HANDLE output = INVALID_HANDLE_VALUE;

std::wstring Variable(const wchar_t* name) {
    DWORD size = GetEnvironmentVariableW(name, nullptr, 0);
    if (size == 0) return {};
    std::wstring value(size, L'\0');
    DWORD written = GetEnvironmentVariableW(name, value.data(), size);
    value.resize(written < size ? written : 0);
    return value;
}

std::string Utf8(const std::wstring& text) {
    if (text.empty()) return {};
    int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(size > 0 ? size : 0, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), size, nullptr, nullptr);
    return out;
}

}  // namespace

std::string Switch() { return Utf8(Variable(L"TVAPIC_CHECK")); }

std::string OpenOutput() {
    std::wstring path = Variable(L"TVAPIC_CHECK_LOG");
    if (path.empty()) return {};
    HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return Utf8(path) + ": cannot be opened (error " + std::to_string(GetLastError()) + ")";
    }
    output = file;
    return {};
}

void WriteLine(const std::string& line) {
    std::string text = line + "\n";
    HANDLE to = output != INVALID_HANDLE_VALUE ? output : GetStdHandle(STD_ERROR_HANDLE);
    if (to == nullptr || to == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(to, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

std::uint64_t ThreadNumber() { return GetCurrentThreadId(); }

}  // namespace tvapic::check::platform
