// The pass from the interim tables to tasks, resources, links and assignments.
#pragma once

#include <string>

#include "program/error_boxes.h"
#include "program/program.h"

namespace merivane::translator {

using namespace program;

// Writes the plan of gMspProjId into the MSP_ tables of gMspConn and, where a name is given, side
// by side into an MPX file, which stays open (flushed) until the program ends. Any failure ends the
// program through FatalAbort.
void TranslateToProject(ModelToProject& state, const std::string& mpxFileName);

}  // namespace merivane::translator
