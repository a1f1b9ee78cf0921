#include "server/wire.h"

#include <bit>
#include <iterator>

#include <utf8cpp/utf8.h>

namespace tvapic::server {

static_assert(std::endian::native == std::endian::little, "values travel as they lie in memory: little-endian");

void AppendText(std::string& out, const tvWChar* text) {
    std::size_t at = out.size();
    AppendFixed<std::uint64_t>(out, 0);  // the count, once it is known
    if (text) {
        const tvWChar* end = text;
        while (*end) ++end;
        utf8::utf16to8(text, end, std::back_inserter(out));
    }
    std::uint64_t count = out.size() - at - sizeof(std::uint64_t);
    std::memcpy(out.data() + at, &count, sizeof count);
}

void AppendTextVector(std::string& out, const StringVector_t* texts) {
    if (!texts) return;
    AppendFixed(out, texts->size);
    for (std::uint64_t i = 0; i < texts->size; ++i) AppendText(out, texts->data[i]);
}

WireText FromUtf8(const char* bytes, std::size_t n) {
    WireText text;
    utf8::utf8to16(bytes, bytes + n, std::back_inserter(text));
    return text;
}

}  // namespace tvapic::server
