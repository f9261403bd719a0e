// Tells what the machine refused from what a model or plan is to blame for.
#pragma once

#include "platform/quiet_desktop.h"

namespace merivane::inspect {

using namespace platform;

// Throws the first error that a box told and that is a full disk, a file that can't be opened or
// the like: no finding of the model.
void ThrowMachineFault(const QuietDesktop& desktop);

}  // namespace merivane::inspect
