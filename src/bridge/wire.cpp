#include "bridge/wire.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <stdexcept>
#include <string>

#include <utf8cpp/utf8.h>

namespace tvapic::bridge {

static_assert(std::endian::native == std::endian::little, "values travel as they lie in memory: little-endian");

namespace {

template <class T>
T ReadFixed(ByteStream& s) {
    T value;
    s.ReadExact(&value, sizeof value);
    return value;
}

template <class T>
void WriteFixed(ByteStream& s, T value) {
    s.WriteExact(&value, sizeof value);
}

template <class T>
Slot<T> ReadSlot(ByteStream& s) {
    Slot<T> slot;
    slot.flag = ReadFixed<std::uint8_t>(s);
    if (slot.flag == 0) slot.value = ReadFixed<T>(s);
    return slot;
}

}  // namespace

std::uint64_t ReadU64(ByteStream& s) { return ReadFixed<std::uint64_t>(s); }
std::int32_t ReadI32(ByteStream& s) { return ReadFixed<std::int32_t>(s); }
double ReadF64(ByteStream& s) { return ReadFixed<double>(s); }
Slot<std::int32_t> ReadSlotI32(ByteStream& s) { return ReadSlot<std::int32_t>(s); }
Slot<double> ReadSlotF64(ByteStream& s) { return ReadSlot<double>(s); }

namespace {

// Bytes of a counted string are taken in pieces of this size, so that memory
// follows the bytes that arrive, not the count a peer declares.
constexpr std::uint64_t kReadPiece = 64 * 1024;

// A counted byte string, refused before any allocation when the count is
// over `limit`.
std::string ReadCounted(ByteStream& s, std::uint64_t limit, const char* what) {
    std::uint64_t count = ReadU64(s);
    if (count > limit) {
        throw std::length_error(std::string(what) + " of " + std::to_string(count) + " bytes is over the limit of " +
                                std::to_string(limit) + " bytes");
    }
    std::string bytes;
    while (bytes.size() < count) {
        std::size_t had = bytes.size();
        std::size_t piece = static_cast<std::size_t>(std::min<std::uint64_t>(kReadPiece, count - had));
        bytes.resize(had + piece);
        s.ReadExact(bytes.data() + had, piece);
    }
    return bytes;
}

}  // namespace

std::string ReadName(ByteStream& s) { return ReadCounted(s, kMaxNameBytes, "function name"); }

WireText ReadText(ByteStream& s) {
    std::string utf8 = ReadCounted(s, kMaxTextBytes, "text");
    WireText text;
    utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(text));
    return text;
}

void WriteU64(ByteStream& s, std::uint64_t value) { WriteFixed(s, value); }
void WriteI32(ByteStream& s, std::int32_t value) { WriteFixed(s, value); }

void WriteText(ByteStream& s, const tvWChar* text) {
    std::string utf8;
    if (text) {
        const tvWChar* end = text;
        while (*end) ++end;
        utf8::utf16to8(text, end, std::back_inserter(utf8));
    }
    WriteU64(s, utf8.size());
    if (!utf8.empty()) s.WriteExact(utf8.data(), utf8.size());
}

void WriteTextVector(ByteStream& s, const StringVector_t* texts) {
    if (!texts) return;
    WriteU64(s, texts->size);
    for (std::uint64_t i = 0; i < texts->size; ++i) WriteText(s, texts->data[i]);
}

}  // namespace tvapic::bridge
