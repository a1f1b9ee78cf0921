#include "tvSys2/entry_points.h"

#include <atomic>

namespace {
std::atomic<tvapic::ITvAPICEntry*> registered{nullptr};
std::atomic<int> objects{0};
std::atomic<int> nulls{0};
}  // namespace

namespace entry_points {

void SetTvAPIC(tvapic::ITvAPICEntry* entry) {
    registered = entry;
    ++(entry ? objects : nulls);
}

}  // namespace entry_points

namespace tvsys2_standin {

tvapic::ITvAPICEntry* RegisteredEntry() { return registered; }
int ObjectRegistrations() { return objects; }
int NullRegistrations() { return nulls; }

}  // namespace tvsys2_standin
