// The widths of the blocks a caller receives, read exactly: this test
// program puts its own library heap in place of the platform's (the same C
// heap, with every block's size on record), so a block of the wrong size
// fails here and not only under the sanitizer.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <mutex>

#include "common/c_heap.h"
#include "core/heap.h"
#include "probe/probe.h"
#include "tvAPIC.h"

namespace {

std::mutex sizes_mutex;
std::map<const void*, std::size_t>& Sizes() {
    static std::map<const void*, std::size_t> sizes;
    return sizes;
}

std::size_t BlockSize(const void* block) {
    std::lock_guard lock(sizes_mutex);
    auto it = Sizes().find(block);
    return it == Sizes().end() ? 0 : it->second;
}

}  // namespace

namespace tvapic::heap {

void* Allocate(std::size_t bytes) {
    void* block = c_heap::Allocate(bytes);
    std::lock_guard lock(sizes_mutex);
    Sizes()[block] = bytes;
    return block;
}

void Free(void* block) {
    {
        std::lock_guard lock(sizes_mutex);
        Sizes().erase(block);
    }
    c_heap::Free(block);
}

}  // namespace tvapic::heap

namespace {

TEST(BlockWidths, ReturnedTextIsTwoBytesPerUnitAndAZeroUnit) {
    tvprobe::Held document("ITavraDocument");
    for (const auto* answer : {TVAPIC_TEXT("answer"), TVAPIC_TEXT("")}) {
        document->answers.text = answer;
        tvWChar* name = ITavraDocument_GetName(document.handle());
        EXPECT_EQ(BlockSize(name), (document->answers.text.size() + 1) * 2);
        c_heap::Free(name);
    }
}

TEST(BlockWidths, StringVectorCopiesAndPropertyValueTextsAreEightBytesPerUnit) {
    StringVector_t* v = StringVector_Create(2);
    EXPECT_EQ(BlockSize(v->data), 2 * sizeof(tvWChar*));
    StringVector_Set(v, 0, TVAPIC_TEXT("abc"));
    StringVector_Set(v, 1, TVAPIC_TEXT(""));
    EXPECT_EQ(BlockSize(v->data[0]), 4u * 8);
    EXPECT_EQ(BlockSize(v->data[1]), 1u * 8);
    StringVector_Delete(v);

    PropertyValue_t* value = PropertyValue_Create();
    PropertyValue_SetInt(value, 42);
    tvWChar* text = PropertyValue_ToString(value);  // "42"
    EXPECT_EQ(BlockSize(text), 3u * 8);
    c_heap::Free(text);
    PropertyValue_SetString(value, TVAPIC_TEXT("abcd"));
    text = PropertyValue_GetString(value);
    EXPECT_EQ(BlockSize(text), 5u * 8);
    c_heap::Free(text);
    PropertyValue_SetInt(value, 0);
    PropertyValue_Delete(value);
}

// The probe answers lists of three texts "e0", "e1", "e2".
TEST(BlockWidths, TextsOfListsFromTheHostAreTwoBytesPerUnit) {
    tvprobe::Held documents("IDocuments");
    StringVector_t* made = IDocuments_GetLoadCombinations(documents.handle(), nullptr, nullptr);
    tvprobe::Held document("ITavraDocument");
    StringVector_t* refilled = StringVector_Create(0);
    ITavraDocument_GetExternalFilesNames(document.handle(), 1, refilled);
    for (StringVector_t* v : {made, refilled}) {
        ASSERT_EQ(v->size, 3u);
        EXPECT_EQ(BlockSize(v->data), 3 * sizeof(tvWChar*));
        for (int i = 0; i < 3; ++i) EXPECT_EQ(BlockSize(v->data[i]), 3u * 2) << i;
        StringVector_Delete(v);
    }
}

}  // namespace
