#include "server/name_table.h"

#include <unordered_map>

namespace tvapic::server {
namespace {

// Built once from the generated table, and never destroyed: the server
// thread may decode a request while the process exits.
const std::unordered_map<std::string_view, const NameEntry*>& Names() {
    static const auto* names = [] {
        auto* map = new std::unordered_map<std::string_view, const NameEntry*>;
        map->reserve(kNameTableSize);
        for (std::size_t i = 0; i < kNameTableSize; ++i) map->emplace(kNameTable[i].name, &kNameTable[i]);
        return map;
    }();
    return *names;
}

}  // namespace

const NameEntry* FindName(std::string_view name) {
    auto it = Names().find(name);
    return it == Names().end() ? nullptr : it->second;
}

std::size_t NameCount() { return kNameTableSize; }

}  // namespace tvapic::server
