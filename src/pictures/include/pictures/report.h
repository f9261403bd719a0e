// A model and its plan as one page to read, print and send.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inspect/finding.h"
#include "pictures/chart.h"
#include "pictures/diagram.h"
#include "pictures/process_model.h"

namespace merivane::pictures {

using namespace inspect;

struct Report {
  ProcessModel model;
  std::vector<Diagram> diagrams;  // of the model's scenarios, in their order
  std::optional<DatedPlan> plan;
  std::string whyNoPlan;  // Windows-1252, where there is none
  std::string note = {};  // Windows-1252, at the head of the page
  std::string foot = {};  // Windows-1252: what the page was made of, when and by what
  std::vector<inspect::Finding> findings;
};

// HTML in UTF-8 that needs no other file, no script and no network. It begins with what a reader
// asks first: how long, which tasks decide that, what was chosen, what was found. A click on a
// decomposed unit goes to its scenario, and a table below each diagram tells the same in words. A
// unit or a junction with an error or a warning has a dot, to which the finding leads.
std::string ReportPage(const Report& report);

}  // namespace merivane::pictures
