// The simulated host's document file: UTF-8 text, one record per line (the
// format is described in docs/simulated-host.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/support/document_data.h"

namespace tvsim {

inline constexpr int kDocumentFormatVersion = 1;

// Why a file did not read; the values are the host's tvRecoverErrorEnum.
enum class ReadError : int {
    kNone = 0,
    kUnreadable = 1,   // missing, not a regular file, or cannot be read
    kNotDocument = 2,  // no document header, or a format version not known
    kDamaged = 3,      // a record that does not read, or no end record
};

struct ReadResult {
    ReadError error = ReadError::kNone;
    bool ok = false;  // false leaves `data` incomplete
    int format_version = 0;
    DocumentData data;
    std::vector<int> skipped_lines;  // records passed over in recover mode
};

std::string FormatDocument(const DocumentData& data);
// In recover mode a damaged record is skipped (its line number noted) and
// the rest is read; otherwise it fails the whole read.
ReadResult ParseDocument(std::string_view bytes, bool recover);

bool WriteDocumentFile(const tvapi::WString& path, const DocumentData& data);
ReadResult ReadDocumentFile(const tvapi::WString& path, bool recover);

}  // namespace tvsim
