// What the elements of a model say about each other.
#pragma once

#include <vector>

#include "model.h"

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

}  // namespace merivane::inspect
