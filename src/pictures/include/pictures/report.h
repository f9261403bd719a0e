// A model and its plan as one page to read, print and send.
//
//   Report report;
//   report.model = ReadProcessModel(connection, project);
//   report.plan = ReadDatedPlan(connection, project, today);
//   report.diagrams = DrawDiagrams(report.model.scenarios, {.headline = false});
//   report.findings = CheckModel("model.txt", templatePath);
//   WriteOutput(Output("page.html"), ReportPage(report));
//
// Everything is read before, and fails there: the page is put together from what the report holds,
// opens nothing, and owns all of its text.
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
  std::vector<Diagram> diagrams;  // one for each of the model's scenarios, in their order
  std::optional<DatedPlan> plan;
  std::string whyNoPlan;  // Windows-1252, where there is none
  std::string note = {};  // Windows-1252, at the head of the page
  std::string foot = {};  // Windows-1252: what the page was made of, when and by what
  std::vector<inspect::Finding> findings;  // of the text, in the order in which they are told
};

// HTML in UTF-8 that needs no other file, no script and no network. It begins with what a reader
// asks first: how long, which tasks decide that, what was chosen, what was found. A click on a
// decomposed unit goes to its scenario, and a table below each diagram tells the same in words. A
// unit or a junction with an error or a warning has a dot, to which the finding leads.
// REQUIRES: a diagram for each scenario.
std::string ReportPage(const Report& report);

}  // namespace merivane::pictures
