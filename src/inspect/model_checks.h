// What the elements of a model say about each other, and what only a trial of its translation in a
// temporary database can tell.
#pragma once

#include <vector>

#include "model.h"
#include "reading.h"

namespace merivane::inspect {

// Elements of one kind, or of one scenario, that share a number, and those of a pool that share a
// name.
void CheckNumbers(const Model& model, std::vector<Finding>& findings);

// Names that the translator can't ask the database for, units of no process, notes that are too
// long for the plan, objects that nobody uses, labor rules, cycle times.
void CheckNames(const Model& model, std::vector<Finding>& findings);
void CheckObjects(const Model& model, std::vector<Finding>& findings);

// Ends of links, junctions that join nothing, units that nothing leads to, circles.
void CheckLinks(const Model& model, std::vector<Finding>& findings);

// Decompositions: circles, scenarios of no unit. Facts that choose no scenario and no path.
void CheckScenarios(const Model& model, std::vector<Finding>& findings);

// False for a model that leaves the translator nothing to decide and is so large that trying it
// would take several times as long as reading it.
bool IsTrialNeeded(const Model& model);

// Translates the text as the batch program would, with the first scenario wherever one has to be
// chosen, and tells what was asked, which paths were taken and what ended it. `isSound`: the
// model's own checks found no error, so that a failure that nothing explains is told as it is.
// REQUIRES: the text was read to its end; called once.
std::vector<Finding> TryTranslation(ReadModelText& text, bool isSound);

}  // namespace merivane::inspect
