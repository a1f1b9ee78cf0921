// The request decoder on byte strings: every wire kind, requests cut short,
// counts over their limits and text that is not UTF-8. The functions and
// their argument kinds are written down here, not taken from the generator.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <variant>

#include "server/decoder.h"
#include "server/request_buffer.h"

namespace tvapic::server {
namespace {

template <class T>
std::string Bytes(T v) {
    std::string out(sizeof v, '\0');
    std::memcpy(out.data(), &v, sizeof v);  // little-endian, as on the wire
    return out;
}
std::string Counted(const std::string& bytes) { return Bytes<std::uint64_t>(bytes.size()) + bytes; }

Request Complete(const std::string& bytes) {
    Decoded d = Decode(bytes);
    EXPECT_TRUE(std::holds_alternative<Request>(d)) << "not complete";
    return std::holds_alternative<Request>(d) ? std::get<Request>(std::move(d)) : Request();
}

TEST(Decoder, EveryWireKindArrivesAsItsValue) {
    // ITavraDocument2D_AddVariable: u64, string, f64, string.
    std::string request = Counted("ITavraDocument2D_AddVariable") + Bytes<std::uint64_t>(0x1122334455667788) +
                          Counted("h\xC3\xA9") + Bytes(2.5) + Counted("");
    Request r = Complete(request);
    ASSERT_NE(r.function, nullptr);
    ASSERT_EQ(r.args.size(), 4u);
    EXPECT_EQ(std::get<std::uint64_t>(r.args[0]), 0x1122334455667788u);
    EXPECT_EQ(std::get<WireText>(r.args[1]), (WireText{tvWChar('h'), tvWChar(0xE9)}));
    EXPECT_EQ(std::get<double>(r.args[2]), 2.5);
    EXPECT_EQ(std::get<WireText>(r.args[3]), WireText());

    // IApplication_StopCurrentProcess: i32, u64; negative numbers keep their sign.
    Request stop = Complete(Counted("IApplication_StopCurrentProcess") + Bytes<std::int32_t>(-7) + Bytes<std::uint64_t>(0));
    EXPECT_EQ(std::get<std::int32_t>(stop.args.at(0)), -7);
}

TEST(Decoder, SlotsCarryAValueOnlyWhenTheirFlagIsZero) {
    // ITavraDocument_GetDocumentGabarit: u64, then four f64 slots.
    std::string request = Counted("ITavraDocument_GetDocumentGabarit") + Bytes<std::uint64_t>(0) +
                          '\0' + Bytes(1.5) + '\1' + '\7' + '\0' + Bytes(-2.0);
    Request r = Complete(request);
    ASSERT_EQ(r.args.size(), 5u);
    auto slot = [&](int i) { return std::get<Slot<double>>(r.args[i]); };
    EXPECT_EQ(slot(1).flag, 0);
    EXPECT_EQ(slot(1).value, 1.5);
    EXPECT_EQ(slot(2).flag, 1);
    EXPECT_EQ(slot(2).value, 0.0);
    EXPECT_EQ(slot(3).flag, 7);
    EXPECT_EQ(slot(4).value, -2.0);
}

TEST(Decoder, ARequestCutShortAsksForTheBytesOfTheFieldItStopsIn) {
    std::string name = Counted("IDocuments_GetLoadCombinations");  // u64, string, i32 slot
    std::string request = name + Bytes<std::uint64_t>(5) + Counted("abc") + '\0' + Bytes<std::int32_t>(9);
    for (std::size_t cut = 0; cut < request.size(); ++cut) {
        Decoded d = Decode(std::string_view(request).substr(0, cut));
        ASSERT_TRUE(std::holds_alternative<NeedBytes>(d)) << cut;
        std::size_t total = std::get<NeedBytes>(d).total;
        EXPECT_GT(total, cut);
        EXPECT_LE(total, request.size());
    }
    // The count of the text is known before its bytes: all of them are asked for.
    std::size_t text_start = name.size() + 8 + 8;
    EXPECT_EQ(std::get<NeedBytes>(Decode(request.substr(0, text_start))).total, text_start + 3);
    EXPECT_TRUE(std::holds_alternative<Request>(Decode(request)));
}

TEST(Decoder, CountsOverTheirLimitsAreRefusedBeforeTheirBytes) {
    auto error = [](const std::string& bytes) {
        Decoded d = Decode(bytes);
        return std::holds_alternative<DecodeError>(d) ? std::get<DecodeError>(d).what : std::string("no error");
    };
    EXPECT_EQ(error(Bytes<std::uint64_t>(4097)), "function name of 4097 bytes is over the limit of 4096 bytes");
    EXPECT_EQ(error(Bytes<std::uint64_t>(~0ull)),
              "function name of 18446744073709551615 bytes is over the limit of 4096 bytes");
    EXPECT_TRUE(std::holds_alternative<NeedBytes>(Decode(Bytes<std::uint64_t>(4096))));
    std::string set = Counted("IApplication_SetCurrentDirectory");
    EXPECT_EQ(error(set + Bytes<std::uint64_t>((64ull << 20) + 1)),
              "text of 67108865 bytes is over the limit of 67108864 bytes");
    EXPECT_TRUE(std::holds_alternative<NeedBytes>(Decode(set + Bytes<std::uint64_t>(64ull << 20))));
}

TEST(Decoder, TextThatIsNotUtf8IsAnError) {
    std::string set = Counted("IApplication_SetCurrentDirectory");
    for (std::string bad : {"\xC3", "\xFF", "a\xC3(", "\xED\xA0\x80"}) {
        Decoded d = Decode(set + Counted(bad));
        EXPECT_TRUE(std::holds_alternative<DecodeError>(d)) << bad.size();
    }
}

// Feeds `request` to a buffer in reads of at most `chunk` bytes, as a
// connection does; the largest room it was offered, via `largest`.
Decoded Feed(RequestBuffer& buffer, const std::string& request, std::size_t chunk, std::size_t& largest) {
    std::size_t at = 0;
    for (;;) {
        std::span<char> room = buffer.Room();
        largest = std::max(largest, room.size());
        std::size_t n = std::min({room.size(), chunk, request.size() - at});
        std::memcpy(room.data(), request.data() + at, n);
        at += n;
        Decoded decoded = buffer.Arrived(n);
        if (!std::holds_alternative<NeedBytes>(decoded) || at == request.size()) return decoded;
    }
}

TEST(RequestBuffer, ADeclaredLengthIsReadInPiecesAsItArrives) {
    std::string set = Counted("IApplication_SetCurrentDirectory");
    RequestBuffer never;
    std::size_t largest = 0;
    EXPECT_TRUE(std::holds_alternative<NeedBytes>(Feed(never, set + Bytes<std::uint64_t>(64ull << 20) + "abc", 1000, largest)));
    EXPECT_LE(largest, 64u * 1024u);

    // 'é' is two bytes: with an odd prefix, some land across a piece boundary.
    std::string utf8 = "x";
    while (utf8.size() < 200 * 1024) utf8 += "\xC3\xA9";
    for (std::size_t chunk : {std::size_t{1} << 20, std::size_t{4093}}) {
        RequestBuffer whole;
        largest = 0;
        Decoded d = Feed(whole, set + Counted(utf8) + "after", chunk, largest);
        ASSERT_TRUE(std::holds_alternative<Request>(d)) << chunk;
        const WireText& text = std::get<WireText>(std::get<Request>(d).args[0]);
        ASSERT_EQ(text.size(), 1 + (utf8.size() - 1) / 2);
        EXPECT_TRUE(std::all_of(text.begin() + 1, text.end(), [](auto unit) { return unit == 0xE9; }));
        EXPECT_LE(largest, 64u * 1024u);
    }
}

}  // namespace
}  // namespace tvapic::server
