// The work tables of a merge, and the sources that hand a plan to them.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "program/program.h"
#include "runtime/value.h"

namespace merivane::roundtrip {

using namespace program;

struct PlanHead {
  std::string text;       // kept in P_Misc
  std::string startDate;  // empty unless it is a date
};

struct MergedResource {
  Value id;  // a number, or the text of one
  std::string name;
  Value quantity;  // Null where the plan tells none
};

struct MergedTask {
  std::int32_t id = 0;
  std::string name;
  std::string duration;  // days
  std::int32_t level = 1;
  std::string predecessors;
  std::string text1;  // counts where it is a number
  std::optional<std::string> notes;
};

struct MergedAssignment {
  std::int32_t task = 0;
  Value resource;
  Value units;
};

// The work tables of gInterimProjId on gInterimConn, and MSP_RESOURCES. Values that a column
// refuses are errors 6 and 13.
class WorkTables {
 public:
  explicit WorkTables(ProjectToModel& state) : state_(state) {}

  // Empties the tables, and when a model is rebuilt the plan's tables too; keeps the head.
  void Clear(const PlanHead& head);

  // Resources come between the two: those that went to the plan and aren't handed over again are
  // deleted.
  void BeginResources();
  void EndResources();

  // A resource goes to ProjectRes, and to MSP_RESOURCES once its note is known; a known one without
  // a note keeps the one that it has.
  void BeginResource(const MergedResource& resource);
  void EndResource(const std::optional<std::string>& note);

  void AddTask(const MergedTask& task);
  void AddAssignment(
      const MergedAssignment& assignment);  // the first of a task and resource counts

 private:
  // The numbers of the last resource that bears an object's number.
  struct ResourceNumbers {
    std::int16_t object = 0;
    std::int16_t uid = 0;
  };

  void KeepHead(const std::string& text);
  ResourceNumbers LastResourceNumbers();
  void MarkSentResourcesUnseen();
  void AddResource(const MergedResource& resource);
  void AddPlanResource(const MergedResource& resource);
  // Whether the table, empty at first, may hold the task and resource.
  bool MayBeAssigned(const MergedAssignment& assignment);

  ProjectToModel& state_;
  ResourceNumbers numbers_;
  Recordset resource_;  // of MSP_RESOURCES, on the resource in hand
  std::set<std::pair<std::int32_t, std::int32_t>> assigned_;
  bool arePlain_ = true;  // no resource was named by another text than that of its number
};

// A source that refuses the plan has told so in a box.
struct PlanRefused {};

class PlanSource {
 public:
  virtual ~PlanSource() = default;

  // Called in this order. Opening changes no table.
  virtual PlanHead Open() = 0;
  virtual void HandResources(WorkTables& tables) = 0;
  virtual void HandTasks(WorkTables& tables) = 0;  // and assignments

  // A plan without tasks has nothing to merge; a source that can't tell says true.
  virtual bool HasTasks() const = 0;
};

}  // namespace merivane::roundtrip
