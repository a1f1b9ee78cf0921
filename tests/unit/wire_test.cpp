// Counted strings on the wire: the bytes a peer declares are taken as they
// arrive, never set aside in advance.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "bridge/memory_stream.h"
#include "bridge/wire.h"

namespace tvapic::bridge {
namespace {

// A memory stream that remembers the largest read it was asked for.
class MeasuredStream final : public ByteStream {
public:
    explicit MeasuredStream(std::string request) : inner_(std::move(request)) {}
    void ReadExact(void* buffer, std::size_t n) override {
        largest_read = std::max(largest_read, n);
        inner_.ReadExact(buffer, n);
    }
    void WriteExact(const void* data, std::size_t n) override { inner_.WriteExact(data, n); }
    void Close() override { inner_.Close(); }

    std::size_t largest_read = 0;

private:
    MemoryStream inner_;
};

std::string Counted(std::uint64_t count, const std::string& bytes) {
    std::string out(sizeof count, '\0');
    std::memcpy(out.data(), &count, sizeof count);  // little-endian, as on the wire
    return out + bytes;
}

TEST(WireText, ADeclaredLengthThatNeverArrivesIsNotAllocatedUpFront) {
    MeasuredStream stream(Counted(kMaxTextBytes, "abc"));
    EXPECT_THROW(ReadText(stream), boost::system::system_error);
    EXPECT_LE(stream.largest_read, 64u * 1024u);
}

TEST(WireText, ALongTextArrivingInPiecesReadsBackWhole) {
    // 'é' is two bytes: with an odd prefix, some land across a piece boundary.
    std::string utf8 = "x";
    while (utf8.size() < 200 * 1024) utf8 += "\xC3\xA9";
    MeasuredStream stream(Counted(utf8.size(), utf8));
    WireText text = ReadText(stream);
    ASSERT_EQ(text.size(), 1 + (utf8.size() - 1) / 2);
    EXPECT_EQ(text.front(), u'x');
    EXPECT_TRUE(std::all_of(text.begin() + 1, text.end(), [](auto unit) { return unit == 0xE9; }));
}

}  // namespace
}  // namespace tvapic::bridge
