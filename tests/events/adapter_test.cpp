// The callback adapter's conversions, one signature at a time: what the C
// callback receives, what its writes do to the host's arguments, and what
// the host gets back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/c_heap.h"
#include "events/adapter.h"
#include "events/test_text.h"
#include "probe/probe.h"
#include "probe/probe_faces.h"
#include "tvAPIC.h"
#include "tvapi/drawing.h"

namespace {

using eventtext::Text;
using tvapic::events::MakeHandler;
using tvapi::WString;

TEST(WritableText, LeftUnsetEmptiesTheHostText) {
    auto handler = MakeHandler<std::function<void(WString&)>>(+[](tvWChar** text) { EXPECT_EQ(*text, nullptr); });
    WString host = TVAPIC_TEXT("previous");
    handler(host);
    EXPECT_TRUE(host.empty());
}

TEST(WritableText, TakesTheCallbacksTextAndLeavesItsBuffer) {
    static WString mine = TVAPIC_TEXT("chosen");
    auto handler = MakeHandler<std::function<bool(const WString&, WString&)>>(
        +[](const tvWChar* marking, tvWChar** chosen) {
            *chosen = mine.data();
            return Text(marking) == TVAPIC_TEXT("M-1") ? 1 : 0;
        });
    WString marking = TVAPIC_TEXT("M-1"), chosen = TVAPIC_TEXT("previous");
    EXPECT_TRUE(handler(marking, chosen));
    EXPECT_EQ(chosen, WString(TVAPIC_TEXT("chosen")));
    EXPECT_EQ(mine, TVAPIC_TEXT("chosen"));
}

TEST(WritableTruthValue, OffersZeroOrOneAndTakesNonZeroAsTrue) {
    static std::vector<int> offered;
    auto handler = MakeHandler<std::function<bool(int, int&, bool&)>>(+[](int, int* state, int* enabled) {
        offered.push_back(*enabled);
        *enabled = *enabled ? 0 : 5;
        *state += 1;
        return 1;
    });
    bool enabled = false;
    int state = 41;
    handler(0, state, enabled);
    EXPECT_TRUE(enabled);
    EXPECT_EQ(state, 42);
    handler(0, state, enabled);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(offered, (std::vector<int>{0, 1}));
}

TEST(Results, NonZeroIsTrue) {
    static int answer = 0;
    auto handler = MakeHandler<std::function<bool()>>(+[]() { return answer; });
    for (int a : {2, -1, 1}) {
        answer = a;
        EXPECT_TRUE(handler()) << a;
    }
    answer = 0;
    EXPECT_FALSE(handler());
}

enum Menu : int {};

TEST(Results, EnumerationsAndPointersComeBackUnchanged) {
    auto menu = MakeHandler<std::function<Menu(int, int)>>(+[](int x, int y) { return x * 100 + y; });
    EXPECT_EQ(menu(7, -3), static_cast<Menu>(697));
    auto control = MakeHandler<std::function<void*(void*)>>(+[](void* parent) {
        return static_cast<void*>(static_cast<char*>(parent) + 1);
    });
    char window[2];
    EXPECT_EQ(control(window), window + 1);
}

// A host list of texts and the C string vector the callback edits, raised
// several times over: what one raise leaves is the next one's list, and the
// heap hands freed blocks out again between them.
struct ListCase {
    static inline void (*edit)(StringVector_t*) = nullptr;
    static int Callback(StringVector_t* files, int) {
        edit(files);
        return 1;
    }
    static std::vector<WString> Run(std::vector<WString> host, void (*how)(StringVector_t*), int raises = 1) {
        edit = how;
        auto handler = MakeHandler<std::function<bool(std::vector<WString>&, bool)>>(&Callback);
        for (int i = 0; i < raises; ++i) handler(host, true);
        return host;
    }
};

// A text in a block of the shared heap, as a callback allocates one.
tvWChar* NewText(const WString& text) {
    auto* block = static_cast<tvWChar*>(c_heap::Allocate((text.size() + 1) * sizeof(tvWChar)));
    std::copy(text.begin(), text.end(), block);
    block[text.size()] = 0;
    return block;
}

std::vector<WString> Texts(std::initializer_list<const tvWChar*> texts) { return {texts.begin(), texts.end()}; }

TEST(WritableTextList, ClearedAndGivenANewBlockOfAnotherLength) {
    // The new texts are longer than the old, so the heap does not hand the
    // old texts' blocks out again for them; the new block is much the size
    // of the old, so it may well be the same address.
    auto three = Texts({TVAPIC_TEXT("first drawing.dwg"), TVAPIC_TEXT("second drawing.dwg"), TVAPIC_TEXT("third drawing.dwg")});
    auto host = ListCase::Run(Texts({TVAPIC_TEXT("a.dwg"), TVAPIC_TEXT("b.dwg")}), [](StringVector_t* v) {
        StringVector_Clear(v);
        v->data = static_cast<tvWChar**>(c_heap::Allocate(3 * sizeof(tvWChar*)));
        v->size = 3;
        v->data[0] = NewText(TVAPIC_TEXT("first drawing.dwg"));
        v->data[1] = NewText(TVAPIC_TEXT("second drawing.dwg"));
        v->data[2] = NewText(TVAPIC_TEXT("third drawing.dwg"));
    }, 8);
    EXPECT_EQ(host, three);
}

TEST(WritableTextList, AnElementFreedThenSetReplacesTheHostOne) {
    auto host = ListCase::Run(Texts({TVAPIC_TEXT("a"), TVAPIC_TEXT("b"), TVAPIC_TEXT("c")}), [](StringVector_t* v) {
        c_heap::Free(v->data[1]);
        StringVector_Set(v, 1, TVAPIC_TEXT("renamed"));
    }, 8);
    EXPECT_EQ(host, Texts({TVAPIC_TEXT("a"), TVAPIC_TEXT("renamed"), TVAPIC_TEXT("c")}));
}

TEST(WritableTextList, ABlockOfTheCallbacksOwnReplacesTheVectorsContent) {
    auto host = ListCase::Run(Texts({TVAPIC_TEXT("a"), TVAPIC_TEXT("b")}), [](StringVector_t* v) {
        for (std::uint64_t i = 0; i < v->size; ++i) c_heap::Free(v->data[i]);
        c_heap::Free(v->data);
        v->data = static_cast<tvWChar**>(c_heap::Allocate(sizeof(tvWChar*)));
        v->data[0] = NewText(TVAPIC_TEXT("only"));
        v->size = 1;
    }, 8);
    EXPECT_EQ(host, Texts({TVAPIC_TEXT("only")}));
}

TEST(WritableTextList, EmptiedByItsClearEmptiesTheHostList) {
    EXPECT_TRUE(ListCase::Run(Texts({TVAPIC_TEXT("a.dwg"), TVAPIC_TEXT("b.dwg")}), [](StringVector_t* v) {
        StringVector_Clear(v);
    }).empty());
    EXPECT_TRUE(ListCase::Run({}, [](StringVector_t* v) { StringVector_Clear(v); }).empty());
}

TEST(WritableTextList, LeftAloneOrShortenedComesBackAsLeft) {
    auto two = Texts({TVAPIC_TEXT("a"), TVAPIC_TEXT("")});
    EXPECT_EQ(ListCase::Run(two, [](StringVector_t*) {}, 4), two);
    EXPECT_TRUE(ListCase::Run({}, [](StringVector_t* v) { EXPECT_EQ(v->size, 0u); }).empty());
    auto head = ListCase::Run(Texts({TVAPIC_TEXT("a"), TVAPIC_TEXT("b")}), [](StringVector_t* v) {
        c_heap::Free(v->data[1]);
        v->size = 1;
    });
    EXPECT_EQ(head, Texts({TVAPIC_TEXT("a")}));
}

// Objects and lists of objects.
struct Objects {
    tvprobe::Object* line = tvprobe::Object::Create({"IDrawingObject"});
    tvprobe::Object* arc = tvprobe::Object::Create({"IDrawingObject"});
    ~Objects() {
        line->Release();
        arc->Release();
    }
    tvapi::SmartPtr<tvapi::IDrawingObject> Of(tvprobe::Object* o) {
        return tvapi::SmartPtr<tvapi::IDrawingObject>(o->As<tvapi::IDrawingObject>());
    }
};

using ObjectList = std::vector<tvapi::SmartPtr<tvapi::IDrawingObject>>;

TEST(ObjectArguments, AHandleIsLentWithoutAReference) {
    Objects o;
    static void* seen = nullptr;
    static int refs_seen = 0;
    static tvprobe::Object* watched = nullptr;
    watched = o.line;
    auto handler = MakeHandler<std::function<bool(int, const tvapi::SmartPtr<tvapi::IDrawingObject>&)>>(
        +[](int, void* object) {
            seen = object;
            refs_seen = watched->refs();
            return 1;
        });
    auto line = o.Of(o.line);
    int addrefs = o.line->addrefs;
    handler(3, line);
    EXPECT_EQ(seen, line.get());
    EXPECT_EQ(refs_seen, 2);
    EXPECT_EQ(o.line->addrefs, addrefs);
}

TEST(ObjectArguments, AListIsMadeForEachCallAndGivenBackAfterIt) {
    Objects o;
    static std::vector<std::vector<void*>> seen;
    static std::vector<int> refs_seen;
    static tvprobe::Object* watched = nullptr;
    watched = o.line;
    seen.clear();
    auto handler = MakeHandler<std::function<bool(const ObjectList&)>>(+[](const ObjectReferenceVector_t* v) {
        seen.emplace_back(v->data, v->data + v->size);
        refs_seen.push_back(watched->refs());
        return 1;
    });
    ObjectList list{o.Of(o.line), nullptr, o.Of(o.arc)};
    handler(list);
    handler(ObjectList{});
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], (std::vector<void*>{o.line->Handle(), nullptr, o.arc->Handle()}));
    EXPECT_TRUE(seen[1].empty());
    EXPECT_EQ(refs_seen[0], 3);  // the probe's, the host list's and the vector's
    list.clear();
    EXPECT_EQ(o.line->refs(), 1);
    EXPECT_EQ(o.arc->refs(), 1);
}

TEST(NumberArguments, ListsAndValuesArriveAsTheHostGaveThem) {
    static std::vector<std::int32_t> cells;
    static std::uint64_t property = 0;
    static std::uint32_t context = 0;
    auto list = MakeHandler<std::function<bool(const std::vector<std::int32_t>&)>>(+[](const Int32Vector_t* v) {
        cells.assign(v->data, v->data + v->size);
        return 0;
    });
    EXPECT_FALSE(list(std::vector<std::int32_t>{-1, 0, 2147483647}));
    EXPECT_EQ(cells, (std::vector<std::int32_t>{-1, 0, 2147483647}));

    auto values = MakeHandler<std::function<bool(std::uint32_t, std::uint64_t, bool)>>(
        +[](std::uint32_t c, std::uint64_t p, int flag) {
            context = c;
            property = p;
            return flag;
        });
    EXPECT_TRUE(values(0xffffffffu, 0xfedcba9876543210ull, true));
    EXPECT_EQ(context, 0xffffffffu);
    EXPECT_EQ(property, 0xfedcba9876543210ull);
}

TEST(ReadOnlyText, IsTheHostsOwnBuffer) {
    static const tvWChar* seen = nullptr;
    auto handler = MakeHandler<std::function<void(const WString&, const WString&)>>(
        +[](const tvWChar*, const tvWChar* current) { seen = current; });
    WString previous = TVAPIC_TEXT("Sketch"), current = TVAPIC_TEXT("Detailing");
    handler(previous, current);
    EXPECT_EQ(seen, current.c_str());
}

TEST(Handler, CopiesCallTheSameCallback) {
    static int calls = 0;
    auto handler = MakeHandler<std::function<void()>>(+[]() { ++calls; });
    std::function<void()> copy = handler;
    std::function<void()> moved = std::move(handler);
    copy();
    moved();
    EXPECT_EQ(calls, 2);
}

}  // namespace
