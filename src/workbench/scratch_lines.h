// Boxes of a run that nobody watches, as lines of the file that it read.
#pragma once

#include <string>
#include <vector>

#include "platform/quiet_desktop.h"

namespace merivane::workbench {

using namespace platform;

// Each text once, on one line, behind those that are there.
void AddLines(const QuietDesktop& desktop, std::vector<std::string>& lines);

}  // namespace merivane::workbench
