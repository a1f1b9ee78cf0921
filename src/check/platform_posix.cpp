// Platform file (POSIX): checked mode's environment, output and thread numbers.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <thread>

#if defined(__linux__)
#include <sys/syscall.h>
#endif

#include "check/platform.h"

namespace tvapic::check::platform {
namespace {

int output = STDERR_FILENO;

}  // namespace

std::string Switch() {
    const char* value = std::getenv("TVAPIC_CHECK");
    return value ? value : "";
}

std::string OpenOutput() {
    const char* path = std::getenv("TVAPIC_CHECK_LOG");
    if (!path || !*path) return {};
    int fd = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd < 0) return std::string(path) + ": " + std::strerror(errno);
    output = fd;
    return {};
}

void WriteLine(const std::string& line) {
    std::string text = line + "\n";
    const char* p = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        ssize_t n = write(output, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;  // nowhere left to say it
        p += n;
        left -= static_cast<std::size_t>(n);
    }
}

std::uint64_t ThreadNumber() {
#if defined(__linux__)
    return static_cast<std::uint64_t>(syscall(SYS_gettid));
#else
    return std::hash<std::thread::id>{}(std::this_thread::get_id());
#endif
}

}  // namespace tvapic::check::platform
