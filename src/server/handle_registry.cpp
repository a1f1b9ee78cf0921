#include "server/handle_registry.h"

namespace tvapic::server {

// Never destroyed: the handles it lists carry references that clients hold
// for as long as the process runs (there is no remote release), and so the
// objects stay reachable from here to the end, for leak checkers too.
HandleRegistry& HandleRegistry::Instance() {
    static auto* registry = new HandleRegistry;
    return *registry;
}

}  // namespace tvapic::server
