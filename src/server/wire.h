// The wire encoding of remote calls: little-endian fixed-width values with
// no padding, nullable slots, text as a 64-bit byte count and UTF-8.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "tvAPIC.h"

namespace tvapic::server {

using WireText = std::basic_string<tvWChar>;

// The longest function name this server reads, and the most text bytes one
// request may carry, all its texts together (and so each of them). Larger
// counts are refused as soon as they arrive, before anything is allocated.
constexpr std::uint64_t kMaxNameBytes = 4096;
constexpr std::uint64_t kMaxRequestTextBytes = 64ull << 20;

// What one argument of a request is on the wire.
enum class WireKind : std::uint8_t { U64, I32, F64, Text, SlotI32, SlotF64 };

// A pointer parameter through which a function returns a value. The flag
// byte is kept for the response: 0 means a value travels with it.
template <class T>
struct Slot {
    std::uint8_t flag = 0;
    T value{};
};

template <class T>
void AppendFixed(std::string& out, T value) {
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class T>
void AppendSlot(std::string& out, const Slot<T>& slot) {
    AppendFixed(out, slot.flag);
    if (slot.flag == 0) AppendFixed(out, slot.value);
}

// A null text goes out as the empty string.
void AppendText(std::string& out, const tvWChar* text);
// A null vector writes nothing at all, not even a count.
void AppendTextVector(std::string& out, const StringVector_t* texts);

// UTF-8 from the wire as wide text; invalid UTF-8 raises.
WireText FromUtf8(const char* bytes, std::size_t n);

}  // namespace tvapic::server
