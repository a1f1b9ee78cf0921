#include "entry/entry.h"

#include <new>

#include "check/check.h"
#include "server/server.h"

namespace tvapic {

// A running server thread executes this library's code: from its start on,
// the library stays loaded, so that an unload cannot pull the code from
// under the thread, and the process's exit does not end what the thread uses
// while it runs.
void TvAPICEntry::Start(std::uint16_t port) {
    if (!server::Server::Instance().Start(port)) return;
    KeepLibraryLoaded();
    StopServerAtExit();
}
void TvAPICEntry::Stop() { server::Server::Instance().Stop(); }
void TvAPICEntry::Run(std::int64_t posted) { server::Server::Instance().RunPostedCalls(posted); }

// The library keeps no pointer of its own to the entry object, and does not
// delete it on unload: it belongs to the host from registration on. A failed
// allocation registers null. Checked mode, when asked for, starts before any
// export can run, and lists what is still held when the library goes.
void OnProcessAttach() {
    check::StartFromEnvironment();
    entry_points::SetTvAPIC(new (std::nothrow) TvAPICEntry());
}

void OnProcessDetach() {
    entry_points::SetTvAPIC(nullptr);
    check::ReportAtExit();
}

}  // namespace tvapic
