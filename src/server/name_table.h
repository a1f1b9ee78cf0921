// Every function name of the API (the handle, vector and value functions
// aside), each with its remote function when it is remotable. The table is
// generated from the catalogue.
#pragma once

#include <cstddef>
#include <string_view>

#include "server/request.h"

namespace tvapic::server {

struct NameEntry {
    const char* name;
    const RemoteFunction* function;  // null: not remotable
};

extern const NameEntry kNameTable[];
extern const std::size_t kNameTableSize;

// The entry of a name, compared byte for byte; null for a name that is no
// function of the API.
const NameEntry* FindName(std::string_view name);

std::size_t NameCount();
std::size_t RemotableCount();  // generated

}  // namespace tvapic::server
