// The driver of the direction from model to plan.
#pragma once

#include <string>

#include "program/program.h"

namespace merivane::shell {

using namespace program;

// Reads the text, translates, closes gMspConn. True when all three ran; a run-time error that comes
// up is shown, and the connection then stays open.
bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName);

// Closes gMspConn and drops it.
void CloseMspConnection(ModelToProject& state);

}  // namespace merivane::shell
