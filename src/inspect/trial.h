// A translation of the model in a temporary database, for what only the translator can tell.
#pragma once

#include <vector>

#include "reading.h"

namespace merivane::inspect {

// False for a model that leaves the translator nothing to decide and is so large that trying it
// would take several times as long as reading it.
bool IsTrialNeeded(const Model& model);

// Translates the text as the batch program would, with the first scenario wherever one has to be
// chosen, and tells what was asked, which paths were taken and what ended it. `isSound`: the
// model's own checks found no error, so that a failure that nothing explains is told as it is.
// REQUIRES: the text was read to its end; called once.
std::vector<Finding> TryTranslation(ReadModelText& text, bool isSound);

}  // namespace merivane::inspect
