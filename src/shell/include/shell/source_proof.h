// Reads the head of a source before a run that it is for replaces or changes anything.
#pragma once

#include <string>

#include "neutraltext/modGlobal.h"

namespace merivane::shell {

using namespace neutraltext;

// False where the file can't be read, is empty or of another kind; the reader's own box was shown.
bool ProveModelText(ModelToProject& state, const std::string& path);
bool ProveMpx(ProjectToModel& state, const std::string& path);

// The same for the whole of a file of planning XML.
bool ProveXml(ProjectToModel& state, const std::string& path);

}  // namespace merivane::shell
