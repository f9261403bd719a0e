// Planning XML as the source of a plan.
#pragma once

#include <string>

#include "mspdi/plan_reader.h"
#include "work_tables.h"

namespace merivane::roundtrip {

using namespace mspdi;
using namespace program;

class XmlSource : public PlanSource {
 public:
  XmlSource(ProjectToModel& state, const std::string& fileName)
      : state_(state), fileName_(fileName) {}

  PlanHead Open() override;
  void HandResources(WorkTables& tables) override;
  void HandTasks(WorkTables& tables) override;
  bool HasTasks() const override { return !plan_.tasks.empty(); }

 private:
  void CheckNames() const;
  void CheckOccurrences() const;
  void TellLostCharacters() const;
  void TellUntaken() const;
  [[noreturn]] void RefuseName(const std::string& rule, const std::string& name,
                               const std::string& row) const;

  ProjectToModel& state_;
  std::string fileName_;
  mspdi::FilePlan plan_;
};

}  // namespace merivane::roundtrip
