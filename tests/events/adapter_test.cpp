// The callback adapter's writable texts: what the host's text and list of
// texts become from what the C callback left. (Every other conversion is the
// registration sweep's.)
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

#include "common/c_heap.h"
#include "core/heap.h"
#include "events/adapter.h"
#include "tvAPIC.h"

// This program puts a heap of its own in the library's place: the C heap,
// with every live block on record, so that a block freed twice is counted
// (and not freed again) instead of corrupting the heap.
namespace {
std::set<void*> live;
int double_frees = 0;
}  // namespace

namespace tvapic::heap {

void* Allocate(std::size_t bytes) {
    void* block = c_heap::Allocate(bytes);
    live.insert(block);
    return block;
}

void Free(void* block) {
    if (!block) return;
    if (live.erase(block)) c_heap::Free(block);
    else ++double_frees;
}

}  // namespace tvapic::heap

namespace {

using tvapic::heap::Allocate;
using tvapic::heap::Free;

using tvapic::events::MakeHandler;
using tvapi::WString;
using Texts = std::vector<WString>;

TEST(WritableText, TakesTheCallbacksTextLeavesItsBufferAndEmptiesWhenLeftUnset) {
    static WString mine = TVAPIC_TEXT("chosen");
    static bool write = true;
    auto handler = MakeHandler<std::function<void(WString&)>>(+[](tvWChar** text) {
        if (write) *text = mine.data();
    });
    WString host = TVAPIC_TEXT("previous");
    handler(host);
    EXPECT_EQ(host, TVAPIC_TEXT("chosen"));
    EXPECT_EQ(mine, TVAPIC_TEXT("chosen"));
    write = false;
    handler(host);
    EXPECT_TRUE(host.empty());
}

// A text in a block of the shared heap, as a callback allocates one.
tvWChar* NewText(const WString& text) {
    auto* block = static_cast<tvWChar*>(Allocate((text.size() + 1) * sizeof(tvWChar)));
    std::copy(text.begin(), text.end(), block);
    block[text.size()] = 0;
    return block;
}

// A host list of texts and the C string vector a callback edits, raised
// several times over: what one raise leaves is the next one's list, and the
// heap hands freed blocks out again between them.
struct ListCase {
    const char* name;
    Texts host;
    void (*edit)(StringVector_t*);
    Texts expected;
};

void (*current_edit)(StringVector_t*) = nullptr;

TEST(WritableTextList, BecomesWhatTheCallbackLeftInTheVector) {
    const ListCase cases[] = {
        {"cleared and given a new block", {TVAPIC_TEXT("a.dwg"), TVAPIC_TEXT("b.dwg")},
         [](StringVector_t* v) {
             StringVector_Clear(v);
             v->data = static_cast<tvWChar**>(Allocate(2 * sizeof(tvWChar*)));
             v->size = 2;
             v->data[0] = NewText(TVAPIC_TEXT("first drawing.dwg"));
             v->data[1] = NewText(TVAPIC_TEXT("second drawing.dwg"));
         },
         {TVAPIC_TEXT("first drawing.dwg"), TVAPIC_TEXT("second drawing.dwg")}},
        {"an element freed, then set", {TVAPIC_TEXT("a"), TVAPIC_TEXT("b"), TVAPIC_TEXT("c")},
         [](StringVector_t* v) {
             Free(v->data[1]);
             StringVector_Set(v, 1, TVAPIC_TEXT("renamed"));
         },
         {TVAPIC_TEXT("a"), TVAPIC_TEXT("renamed"), TVAPIC_TEXT("c")}},
        {"all freed, a block of its own", {TVAPIC_TEXT("a"), TVAPIC_TEXT("b")},
         [](StringVector_t* v) {
             for (std::uint64_t i = 0; i < v->size; ++i) Free(v->data[i]);
             Free(v->data);
             v->data = static_cast<tvWChar**>(Allocate(sizeof(tvWChar*)));
             v->data[0] = NewText(TVAPIC_TEXT("only"));
             v->size = 1;
         },
         {TVAPIC_TEXT("only")}},
        {"one text stored twice", {TVAPIC_TEXT("a"), TVAPIC_TEXT("b")},
         [](StringVector_t* v) {
             Free(v->data[1]);
             v->data[1] = v->data[0];
         },
         {TVAPIC_TEXT("a"), TVAPIC_TEXT("a")}},
        {"emptied by its clear", {TVAPIC_TEXT("a.dwg")}, [](StringVector_t* v) { StringVector_Clear(v); }, {}},
        {"left alone", {TVAPIC_TEXT("a"), TVAPIC_TEXT("")}, [](StringVector_t*) {}, {TVAPIC_TEXT("a"), TVAPIC_TEXT("")}},
        {"shortened", {TVAPIC_TEXT("a"), TVAPIC_TEXT("b")},
         [](StringVector_t* v) {
             if (v->size < 2) return;  // already shortened by an earlier raise
             Free(v->data[1]);
             v->size = 1;
         },
         {TVAPIC_TEXT("a")}},
    };
    auto handler = MakeHandler<std::function<bool(Texts&, bool)>>(+[](StringVector_t* files, int) {
        current_edit(files);
        return 1;
    });
    for (const ListCase& c : cases) {
        current_edit = c.edit;
        double_frees = 0;
        Texts host = c.host;
        for (int raise = 0; raise < 4; ++raise) handler(host, true);
        EXPECT_EQ(host, c.expected) << c.name;
        EXPECT_EQ(double_frees, 0) << c.name;
    }
}

}  // namespace
