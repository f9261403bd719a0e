// What a translation would stumble over, told before it runs.
#pragma once

#include <string>
#include <vector>

#include "inspect/finding.h"

namespace merivane::inspect {

// Reads the model with the program's own reader, tries a translation in a temporary database where
// the model leaves something to decide, and gives all findings, sorted by line. Nothing is written
// but temporary files, which are gone when it returns. Behind a place where the reader gives up
// nothing is looked at, and the finding of that place says so.
//
// Paths are UTF-8. A model or a template that can't be read, and a temporary folder without room,
// are RunTimeErrors.
std::vector<Finding> CheckModel(const std::string& modelPath, const std::string& templatePath);

}  // namespace merivane::inspect
