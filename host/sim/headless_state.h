// Stand-in only: what tests read of the running simulated application's
// headless state, which no host interface reports. Empty when it is not running.
#pragma once

#include <vector>

#include "sim/sim.h"
#include "tvapi/core.h"

namespace tvsim_standin {

TVSIM_API tvapi::WString LastMessage();
TVSIM_API tvapi::WString LastMessageCaption();
TVSIM_API std::vector<int> ExecutedCommands();

}  // namespace tvsim_standin
