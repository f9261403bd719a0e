// A translation of the model in a temporary database, for what only the translator can tell.
#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace merivane::inspect {

// False for a model that leaves the translator nothing to decide and is so large that trying it
// would take seconds.
bool IsTrialNeeded(const Model& model);

// Translates the text as the batch program would, with the first scenario wherever one has to be
// chosen, and tells what was asked, which paths were taken and what ended it. `isSound`: the
// model's own checks found no error, so that a failure that nothing explains is told as it is.
std::vector<Finding> TryTranslation(const Model& model, bool isSound, const std::string& path,
                                    const std::string& templatePath,
                                    const std::string& scratchDatabase);

}  // namespace merivane::inspect
