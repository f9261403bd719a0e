// From a model, the plan that it gives and the plan that is wanted: a list of changes, and what
// can't be had.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "model_edit.h"
#include "outline.h"
#include "reconcile/complete_merge.h"
#include "reconcile/plan_content.h"
#include "rewiring.h"

namespace merivane::reconcile {

class Reconciliation {
 public:
  // All tasks of `wanted` bear the number of a unit: those that `given` hasn't are new.
  Reconciliation(ModelRows model, const PlanContent& given, PlanContent wanted)
      : edit_(std::move(model)),
        given_(given),
        wanted_(std::move(wanted)),
        decomposedBefore_(edit_.DecomposedUnits()) {}

  // Throws CircleOfTasks.
  void Run();

  const std::vector<TableChange>& Changes() const { return edit_.Changes(); }
  const std::vector<Remark>& Remarks() const { return remarks_; }
  // Of units that got another number, by the earlier one.
  const std::map<std::int32_t, std::int32_t>& Numbers() const { return numbers_; }

 private:
  using Task = PlanContent::Task;

  void Tell(std::int32_t unit, std::string sentence, std::string advice);
  void TellResource(const std::string& name, std::string sentence, std::string advice);

  void MendNames();
  void TakeRelations();
  void TakeRelation(const PlanContent::Relation& relation);
  void RefuseCircles() const;
  void TellRelations(const Relations::Pairs& wanted, const Relations::Pairs& reached,
                     const std::string& kind);

  void PlaceTasks();
  // False where each lies where it is wanted, or has been moved as often as helps.
  bool MoveMisplaced(const std::map<std::int32_t, OutlinePlace>& outline,
                     std::map<std::int32_t, int>& moves);
  void AddTask(std::int32_t unit, const Task& task);
  void MoveTask(std::int32_t unit, std::int32_t scenario);
  std::int32_t ScenarioAmong(const Task& task);
  std::int32_t ScenarioBelow(std::int32_t parent);
  void RemoveTasks();
  void RemoveEmptyScenarios();
  std::map<std::int32_t, std::int32_t> NumbersOfPlan() const;
  void OrderTasks();
  std::int32_t NumberOf(std::int32_t unit) const;  // that it gets for its order
  void TellOrder();

  void NameTasks();
  void NameUnits(std::int32_t process, const std::vector<std::int32_t>& renamed);
  std::int32_t ProcessNamed(const std::string& name, std::int32_t notThis) const;
  void TakeNotes();
  bool IsNoteRefused(std::int32_t unit, const std::string& note);
  void TakeDurations();

  void TakeResources();
  void MatchResources();
  bool KnowsUids() const;
  std::map<std::string, std::string> RenamedResources() const;
  void TakeAssignments();
  std::map<std::int32_t, std::string> AmountsOf(const PlanContent& plan,
                                                const std::map<std::string, std::int32_t>& objects,
                                                std::int32_t unit) const;
  std::map<std::int32_t, std::string> AmountsInModel(std::int32_t unit) const;
  void TakeAssignmentsOf(std::int32_t unit, const std::set<std::int32_t>& decomposed);
  void SettleRule(std::int32_t unit, const std::map<std::int32_t, std::string>& units);

  ModelEdit edit_;
  const PlanContent& given_;
  PlanContent wanted_;
  std::set<std::int32_t> decomposedBefore_;
  Relations relations_;
  std::vector<Remark> remarks_;
  std::map<std::int32_t, std::int32_t> numbers_;
  std::set<std::int32_t> touchedScenarios_;
  std::map<std::int32_t, std::map<std::size_t, std::int32_t>> stayingBelow_;  // by place
  std::map<std::string, std::int32_t> objectOf_;      // by the resource's name in the plan
  std::map<std::string, std::int32_t> objectBefore_;  // by its name in the model
};

// Its text names the tasks.
struct CircleOfTasks {
  std::string names;
};

}  // namespace merivane::reconcile
