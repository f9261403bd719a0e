// Planning XML as the source of a plan.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "mspdi/plan_reader.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "work_tables.h"

namespace merivane::roundtrip {

using namespace mspdi;
using namespace program;

class XmlSource : public PlanSource {
 public:
  // A listener (null: none) hears each row that would end the merge. A plan without a known Text1
  // is refused by a merge ...
  XmlSource(ProjectToModel& state, const std::string& fileName, MergeListener* listener)
      : state_(state), listener_(listener), fileName_(fileName) {}
  // ... unless it was read ahead.
  XmlSource(ProjectToModel& state, mspdi::FilePlan plan, MergeListener* listener)
      : state_(state), listener_(listener), plan_(std::move(plan)) {}

  PlanHead Open() override;
  void HandResources(WorkTables& tables) override;
  void HandTasks(WorkTables& tables) override;
  bool HasTasks() const override { return !plan_.tasks.empty(); }

 private:
  struct RefusedRow {
    const char* kind;
    std::int64_t id;
    std::size_t line;
  };

  // Both leave what was refused in a form that goes through, for a listener's sake.
  void CheckNames();
  void CheckOccurrences();
  void TellLostCharacters() const;
  void TellUntaken() const;
  void RefuseName(const std::string& rule, const std::string& name, const RefusedRow& row) const;

  ProjectToModel& state_;
  MergeListener* listener_;
  std::string fileName_;  // empty where the plan was read ahead
  mspdi::FilePlan plan_;
};

}  // namespace merivane::roundtrip
