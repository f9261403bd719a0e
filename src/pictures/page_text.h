// Pieces of the report page, and what it tells of the plan.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pictures/report.h"

namespace merivane::pictures {

// Windows-1252 as text of the page, lines parted by breaks.
std::string Lines(const std::string& text);

// `text` is markup.
std::string LinkTo(const std::string& id, const std::string& text);

struct PageColumn {
  const char* head;
  const char* width = "";  // "narrow": no more than it needs; "wide"
};

// Cells are markup. On a narrow screen each stands in a line of its own behind its head.
class Table {
 public:
  explicit Table(std::vector<PageColumn> columns);
  void Row(const std::vector<std::string>& cells);
  std::string Html() const { return html_ + "</tbody></table>\n"; }

 private:
  std::vector<PageColumn> columns_;
  std::string html_;
};

// Markup: a list of what a reader asks first.
std::string SummaryOf(const Report& report);

// What the model left open and its facts or the user decided, a sentence of Windows-1252 each:
// which branch a junction takes, which scenario stands for a unit, which one at the top.
std::vector<std::string> DecisionsOf(const ProcessModel& model);

// Markup: the chart, for a screen and in sheets for paper, and its tasks as a table.
std::string PlanInPictureAndWords(const DatedPlan& plan);

// Markup: who does how much, for how much, and when more than there is.
std::string ResourcesOf(const DatedPlan& plan);

// How the page looks: on paper, on a light and on a dark screen.
std::string ReportStyle();

}  // namespace merivane::pictures
