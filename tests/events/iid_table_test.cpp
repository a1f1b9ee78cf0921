// The 23 Events interfaces as the host defines them, written down here by
// hand: the IID text the library asks for (exactly, case and all) and
// whether the interface is keyed (its removal takes the subscriber's key).
#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "probe/probe.h"
#include "tvAPIC.h"

namespace {

struct Row {
    const char* name;
    const char* iid;
    bool keyed;
    bool removal_takes_a_key;
    void (*remove_all)(void*);
};

template <auto F>
constexpr bool kTakesAKey = std::is_invocable_v<decltype(F), void*, const tvWChar*>;

template <auto F>
void RemoveAll(void* handle) {
    if constexpr (kTakesAKey<F>) F(handle, TVAPIC_TEXT("key"));
    else F(handle);
}

#define ROW(I, iid, keyed) {#I, iid, keyed, kTakesAKey<&I##_RemoveAllHandlers>, &RemoveAll<&I##_RemoveAllHandlers>}

const Row kEvents[] = {
    ROW(IApplicationEvents, "1CE45EFA-4362-40C5-B4E7-747838206EEC", true),
    ROW(IContentDialogEvents, "DD0692E1-72EB-451E-B5D9-ED6322E9D10C", false),
    ROW(IDocumentFrameEvents, "C37E205F-87C1-49CA-97EF-2B5381082AD1", true),
    ROW(IDrawingObjectEvents, "cbed0f8a-fd20-4bc1-b870-8bcba9ae1e62", false),
    ROW(IFindObject3DParametersEvents, "2297BED7-E584-4EAA-926C-0AD8CFF84397", true),
    ROW(IFindObjectParametersEvents, "57F0FAC1-363D-457E-87B7-97F996639E96", true),
    ROW(ILayoutSheetsEvents, "2FCFAFC9-3B88-437E-84F0-F1C5A345CAFD", true),
    ROW(ILibraryManagerEvents, "dd6e39d4-dda4-4214-81a1-b93eac95dade", true),
    ROW(IModelObjectEvents, "b4817996-168d-42b8-bfe3-e6bfef988c09", false),
    ROW(IPLMObjectEvents, "61B63028-AA97-4EF1-B8DA-57E7DF18BD74", true),
    ROW(IProcess2DEvents, "1cf26b30-c72b-4d96-865b-5b0e93e957cc", true),
    ROW(IProcess3DEvents, "62ba136e-8d11-4398-859b-33baf007e639", true),
    ROW(IProcess3DManipulatorsEvents, "E294243B-97F2-4E0D-AEAE-E52CB705E89A", true),
    ROW(IPropertiesManagerEvents, "4348E28A-6700-4EC9-BECD-D630B20DEE35", true),
    ROW(IPropertyTreeEvents, "85D2A922-587B-49DC-A1E9-762C2770FFBF", true),
    ROW(ISelectionManagerEvents, "4ab36307-bd42-49a5-9462-90df5e6b1f39", true),
    ROW(ISpecificationDescriptionEvents, "4B0BB95D-1483-477E-ABFB-696614E36B91", true),
    ROW(ISpecificationDocumentEvents, "5BD63CAF-C9CA-4999-BF59-9F87CAE5C4B0", true),
    ROW(ISpecificationObjectEvents, "245893b1-4f6d-44f1-94e9-a8353e43d48c", false),
    ROW(IStampEvents, "E0D5B5D8-2A88-4645-A6DF-422E76AD5464", true),
    ROW(ITavraDocument2DEvents, "FF994DC3-9924-4812-9646-1D882C7403C4", true),
    ROW(ITavraDocument3DEvents, "AB01C09B-8F56-4F18-8C8C-16E749F2AC1B", true),
    ROW(ITavraDocumentEvents, "19DF8D3C-43C9-4612-B41E-59C4A7C0BD88", true),
};

TEST(EventsInterfaces, AreAskedForByTheHostsIidTextAndKeyedAsTheHostKeysThem) {
    static_assert(std::size(kEvents) == 23);
    for (const Row& row : kEvents) {
        tvprobe::Held foreign({});  // answers no query: the export asks and stops
        std::string asked;
        foreign->watch = [&](const std::string& what, const char* iid) {
            if (what == "Query") asked = iid;
        };
        row.remove_all(foreign.handle());
        EXPECT_EQ(asked, row.iid) << row.name;
        EXPECT_EQ(row.removal_takes_a_key, row.keyed) << row.name;
        foreign->watch = nullptr;
    }
}

}  // namespace
