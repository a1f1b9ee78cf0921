#include "check/interfaces.h"

#include <cstring>

#include "tvapi/core.h"

namespace tvapic::check {

namespace {

constexpr const char* kBase = tvapi::IAPIObjectIID<tvapi::IAPIObject>::text;

bool Answers(tvapi::IAPIObject* object, const char* iid_text) {
    char iid[37];
    std::memcpy(iid, iid_text, sizeof iid);
    return object->QueryInterface(iid) != nullptr;
}

}  // namespace

std::string InterfaceName(const char* iid) {
    if (!iid || std::strcmp(iid, kBase) == 0) return "IAPIObject";
    for (std::size_t i = 0; i < kInterfaceCount; ++i) {
        if (std::strcmp(kInterfaces[i].iid, iid) == 0) return kInterfaces[i].name;
    }
    return iid;
}

std::string InterfacesAnswered(void* handle) {
    auto* object = static_cast<tvapi::IAPIObject*>(handle);
    std::string names = Answers(object, kBase) ? "IAPIObject" : "";
    for (std::size_t i = 0; i < kInterfaceCount; ++i) {
        if (!Answers(object, kInterfaces[i].iid)) continue;
        if (!names.empty()) names += ", ";
        names += kInterfaces[i].name;
    }
    return names.empty() ? "none of the catalogue's interfaces" : names;
}

}  // namespace tvapic::check
