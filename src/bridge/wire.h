// The wire encoding of remote calls: little-endian fixed-width values with
// no padding, nullable slots, text as a 64-bit byte count and UTF-8.
#pragma once

#include <cstdint>
#include <string>

#include "bridge/stream.h"
#include "tvAPIC.h"

namespace tvapic::bridge {

using WireText = std::basic_string<tvWChar>;

// The longest function name and text this server reads; longer counts are
// refused before anything is allocated.
constexpr std::uint64_t kMaxNameBytes = 4096;
constexpr std::uint64_t kMaxTextBytes = 64ull << 20;

// A pointer parameter through which a function returns a value. The flag
// byte is kept for the response: 0 means a value travels with it.
template <class T>
struct Slot {
    std::uint8_t flag = 0;
    T value{};
};

std::uint64_t ReadU64(ByteStream& s);
std::int32_t ReadI32(ByteStream& s);
double ReadF64(ByteStream& s);
Slot<std::int32_t> ReadSlotI32(ByteStream& s);
Slot<double> ReadSlotF64(ByteStream& s);
// A string argument as zero-terminated wide text; invalid UTF-8 raises.
WireText ReadText(ByteStream& s);
// The function name: its bytes as they came, without conversion.
std::string ReadName(ByteStream& s);

void WriteU64(ByteStream& s, std::uint64_t value);
void WriteI32(ByteStream& s, std::int32_t value);
template <class T>
void WriteSlot(ByteStream& s, const Slot<T>& slot) {
    s.WriteExact(&slot.flag, 1);
    if (slot.flag == 0) s.WriteExact(&slot.value, sizeof slot.value);
}
// A null text goes out as the empty string.
void WriteText(ByteStream& s, const tvWChar* text);
// A null vector writes nothing at all, not even a count.
void WriteTextVector(ByteStream& s, const StringVector_t* texts);

}  // namespace tvapic::bridge
