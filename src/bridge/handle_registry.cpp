#include "bridge/handle_registry.h"

namespace tvapic::bridge {

HandleRegistry& HandleRegistry::Instance() {
    static HandleRegistry registry;
    return registry;
}

}  // namespace tvapic::bridge
