// A model and its plan as one page to read, print and send.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inspect/finding.h"
#include "pictures/diagram.h"
#include "pictures/process_model.h"

namespace merivane::pictures {

using namespace inspect;

struct Report {
  ProcessModel model;
  std::vector<Diagram> diagrams;  // of the model's scenarios, in their order
  std::optional<Picture> chart;
  std::string whyNoChart;  // Windows-1252, where there is none
  std::string note = {};   // Windows-1252, at the head of the page
  std::vector<inspect::Finding> findings;
};

// HTML in UTF-8 that needs no other file, no script and no network. A click on a decomposed unit
// goes to its scenario, and a table below each diagram tells the same in words.
std::string ReportPage(const Report& report);

}  // namespace merivane::pictures
