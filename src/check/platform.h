// What checked mode needs of the operating system: its switches in the
// environment, where its lines go, and a number for the calling thread.
#pragma once

#include <cstdint>
#include <string>

namespace tvapic::check::platform {

// The value of TVAPIC_CHECK, empty when unset.
std::string Switch();

// Sends the lines to the file TVAPIC_CHECK_LOG names, appended to what it
// holds, or to the standard error stream when the variable is unset or empty.
// A file that cannot be opened leaves the lines on the standard error stream
// and returns why; otherwise returns an empty text.
std::string OpenOutput();

// Writes one line and a line break with a single write, so that the lines of
// several threads or processes sharing the file do not interleave.
void WriteLine(const std::string& line);

// The operating system's number for the calling thread, as debuggers show it.
std::uint64_t ThreadNumber();

}  // namespace tvapic::check::platform
