// Every catalogued interface by IID text, for naming handles in reports.
// The table is generated from the catalogue (check/interfaces.cpp in the
// build tree).
#pragma once

#include <cstddef>
#include <string>

namespace tvapic::check {

struct InterfaceEntry {
    const char* iid;
    const char* name;
};

extern const InterfaceEntry kInterfaces[];
extern const std::size_t kInterfaceCount;

// The catalogue name of the interface with this IID text: "IAPIObject" for
// null, the text itself when the catalogue lacks it.
std::string InterfaceName(const char* iid);

// The catalogued interfaces a non-null handle answers, by asking it for each
// IID (with a fresh copy of the text each time), comma-separated.
std::string InterfacesAnswered(void* handle);

}  // namespace tvapic::check
