#include <string>
#include <unordered_map>

#include "bridge/handler_support.h"

namespace tvapic::bridge {
namespace {

// Built once from the generated table; a name maps to its handler.
const std::unordered_map<std::string_view, Handler>& Names() {
    static const std::unordered_map<std::string_view, Handler> names = [] {
        std::unordered_map<std::string_view, Handler> map;
        map.reserve(kNameTableSize);
        for (std::size_t i = 0; i < kNameTableSize; ++i) map.emplace(kNameTable[i].name, kNameTable[i].handler);
        return map;
    }();
    return names;
}

}  // namespace

Handler FindHandler(std::string_view name) {
    auto it = Names().find(name);
    return it == Names().end() ? nullptr : it->second;
}

std::size_t NameCount() { return kNameTableSize; }

}  // namespace tvapic::bridge
