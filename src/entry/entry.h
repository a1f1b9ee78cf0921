// The entry object the host system library receives when tvAPIC is loaded.
#pragma once

#include <cstdint>

#include "tvSys2/entry_points.h"

namespace tvapic {

class TvAPICEntry final : public ITvAPICEntry {
public:
    void Start(std::uint16_t port) override;
    void Stop() override;
    void Run(std::int64_t posted) override;
};

// Load and unload of the library, called by the platform's entry point.
void OnProcessAttach();
void OnProcessDetach();

// Keeps the library loaded until the process ends, whatever the host unloads.
void KeepLibraryLoaded();

// Sees that the process's exit finds no server thread running where the
// platform would let one run on while static objects are destroyed.
void StopServerAtExit();

}  // namespace tvapic
