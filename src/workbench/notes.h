// What is told beside the pictures: findings, boxes, and why units stay out of the plan.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "inspect/check.h"
#include "platform/quiet_desktop.h"
#include "translator/modIDEF3ToProject.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

using namespace inspect;
using namespace translator;

// Hears which way each junction takes, and changes nothing.
class TakenPaths : public TranslationListener {
 public:
  struct JunctionPath {
    std::string link;  // its ID, "12"
    std::string end;   // digits of the junction where the paths meet again
  };
  // Of a junction that had a path fact of its own; null otherwise.
  const JunctionPath* Of(std::int32_t junction) const;

 private:
  void OnFanOut(const Value& junctionNum) override;
  void OnPath(bool ownFact, const std::string& linkId, const std::string& junctionDigits) override;
  bool OnPathsTaken() override { return true; }
  bool OnRow(PlanRow /*row*/) override { return true; }
  bool OnTasksWritten() override { return true; }

  std::int32_t junction_ = 0;
  std::map<std::int32_t, JunctionPath> paths_;
};

// Lines of the elements, and a note for each finding. REQUIRES: the elements are there.
void AddCheck(FileView& view, const CheckedModel& check);

// A note for each change, and its mark on the element, in the model and in the chart.
void AddChanges(FileView& view, const std::vector<MergeChange>& changes);

// Boxes of a run that nobody watches, each text once and on one line, behind those that are there.
void AddLines(const QuietDesktop& desktop, std::vector<std::string>& lines);

// A note for each unit that stays out, with the junction, its fact and the path that it keeps.
void AddLeftOut(FileView& view, const TakenPaths& paths);

}  // namespace merivane::workbench
