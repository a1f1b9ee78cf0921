#include "entry/entry.h"

#include <new>

namespace tvapic {

// The remote call server arrives with the bridge; until then the host's
// start, stop and run requests have nothing to act on.
void TvAPICEntry::Start(std::uint16_t) {}
void TvAPICEntry::Stop() {}
void TvAPICEntry::Run(std::int64_t) {}

// The library keeps no pointer of its own to the entry object, and does not
// delete it on unload: it belongs to the host from registration on. A failed
// allocation registers null.
void OnProcessAttach() {
    entry_points::SetTvAPIC(new (std::nothrow) TvAPICEntry());
}

void OnProcessDetach() {
    entry_points::SetTvAPIC(nullptr);
}

}  // namespace tvapic
