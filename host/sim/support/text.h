// Text, numbers and files for the simulated host: UTF-16 host text to and
// from UTF-8, numbers that read back exactly, and whole-file reads and writes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "tvapi/core.h"

namespace tvsim {

// ASCII text as host text.
tvapi::WString Widen(std::string_view ascii);

// UTF-8 of host text; an unpaired surrogate becomes U+FFFD.
std::string ToUtf8(const tvapi::WString& text);
// Host text of UTF-8; false for malformed input, leaving `out` untouched.
bool FromUtf8(std::string_view bytes, tvapi::WString& out);

// The shortest form that reads back as the same double.
std::string FormatNumber(double value);
tvapi::WString FormatNumberText(double value);
// Whole-token parses; false for anything else, including trailing text.
bool ParseNumber(std::string_view token, double& value);
bool ParseInt(std::string_view token, int& value);

// Empty for text that names no file on this system.
std::filesystem::path ToPath(const tvapi::WString& path);
// Empty for a path that is not text (a POSIX name that is not UTF-8).
tvapi::WString FromPath(const std::filesystem::path& path);
// The file name part of a path, either separator.
tvapi::WString FileNamePart(const tvapi::WString& path);
// The folder part with its trailing separator, or empty.
tvapi::WString FolderPart(const tvapi::WString& path);

// The application's current directory, against which a relative path names
// a file. Empty: the process's working directory.
void SetCurrentFolder(const tvapi::WString& folder);
const tvapi::WString& CurrentFolder();
// A relative path made absolute against the current directory; any other as given.
tvapi::WString AgainstCurrentFolder(const tvapi::WString& path);

// Where the simulated host may read and write files: below the files root
// only, once one is set (tvhost sets one: its clients reach it over the
// network). With none set, anywhere. An empty root unsets it. Paths are
// compared with symbolic links and ".." resolved.
void SetFilesRoot(const std::filesystem::path& root);

// The file operations below take relative paths against the current
// directory and refuse paths outside the files root, saying so on the
// standard error stream (the host's log).
bool IsFile(const tvapi::WString& path);
// Nothing at all at the path: no file, no folder.
bool IsFree(const tvapi::WString& path);
bool ReadWholeFile(const tvapi::WString& path, std::string& bytes);
// Writes beside the target first and renames over it, so a failed write
// leaves an existing file as it was.
bool WriteWholeFile(const tvapi::WString& path, const std::string& bytes);
// Removes the file at the path; true when none is left there.
bool RemoveFile(const tvapi::WString& path);

}  // namespace tvsim
