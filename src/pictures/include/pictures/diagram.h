// Scenarios as diagrams in IDEF3 notation, each a picture of its own.
//
//   const ProcessModel model = ReadProcessModel(connection, project);
//   std::vector<Picture> pictures;
//   for (Diagram& diagram : DrawDiagrams(model.scenarios, {.objects = true})) {
//     if (!diagram.whyListed.empty()) Tell(diagram.picture.title + ' ' + diagram.whyListed);
//     pictures.push_back(std::move(diagram.picture));
//   }
//
// Scenarios go in as ReadProcessModel gives them, or put together by hand; a link to a number that
// its scenario lacks isn't drawn. Lengths and ownership are those of picture.h. A layout that fails
// or takes too long is no error: the units stand in a list then.
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
  std::string note = {};                    // Windows-1252, one line on each picture
  std::chrono::milliseconds limit{10'000};  // for the layout of all scenarios together
};

struct Diagram {
  Picture picture;
  // Where the units stand in a list: why, as "is too large to be laid out" (Windows-1252), to go
  // behind the scenario's name. Else empty.
  std::string whyListed = {};
};

// One for each scenario, in the given order. The id of a picture is "scenario-" and the number, of
// a figure "unit-" or "junction-" and the number, and a decomposed unit leads to the picture of its
// first decomposition. `work` is told that it goes on; what it throws ends the drawing.
std::vector<Diagram> DrawDiagrams(const std::vector<ModelScenario>& scenarios,
                                  const DiagramOptions& options);
std::vector<Diagram> DrawDiagrams(const std::vector<ModelScenario>& scenarios,
                                  const DiagramOptions& options, WorkListener& work);

std::string DiagramId(std::int32_t scenario);
std::string UnitId(std::int32_t unit);

}  // namespace merivane::pictures
