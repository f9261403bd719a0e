// From an MPX file back into the model: the driver of both modes.
#pragma once

#include <cstdint>
#include <string>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Reads the file into the work tables of gInterimConn, folds the plan into the model (mergeFlag -1)
// or builds a new one from it (mergeFlag 0), and writes the Neutral Text to gOutFile. True when it
// ran to its end without reaching its error trap and wrote a project. A failure shows its
// description; name rules and the merge's fatal reports end the program.
// `interimFileName` is handed over and not used.
bool TranslateMpx(ProjectToModel& state, const std::string& mpxFileName,
                  const std::string& interimFileName, std::int16_t mergeFlag);

// Reads the file's head, up to where its layout shows. Errors come up; a file of another kind ends
// the program with its box.
void ProveMpxFile(ProjectToModel& state, const std::string& mpxFileName);

}  // namespace merivane::roundtrip
