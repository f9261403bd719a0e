// Scenarios as diagrams in IDEF3 notation.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "pictures/process_model.h"
#include "store/work_listener.h"

namespace merivane::pictures {

struct DiagramOptions {
  bool objects = false;                     // list the objects of a unit below it
  bool headline = true;                     // the scenario's name above it
  std::string note = {};                    // Windows-1252, told on each picture
  std::chrono::milliseconds limit{10'000};  // for the layout of all scenarios together
};

struct Diagram {
  Picture picture;
  // Where the units stand in a list: why, as "is too large to be laid out". Else empty.
  std::string whyListed = {};
};

// One for each scenario, in the given order. A layout that takes too long or fails gives an
// outline; what `work` throws ends the drawing. The id of a picture is "scenario-" and the number,
// of a unit's figure "unit-" and the number, and a decomposed unit leads to the picture of its
// first decomposition. `work` is told that it goes on.
std::vector<Diagram> DrawDiagrams(const std::vector<ModelScenario>& scenarios,
                                  const DiagramOptions& options);
std::vector<Diagram> DrawDiagrams(const std::vector<ModelScenario>& scenarios,
                                  const DiagramOptions& options, WorkListener& work);

std::string DiagramId(std::int32_t scenario);
std::string UnitId(std::int32_t unit);

}  // namespace merivane::pictures
