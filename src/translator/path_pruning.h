// The choice of one path behind a fan-out junction, from facts stored in the model.
#pragma once

#include <optional>
#include <string>

#include "translation_steps.h"

namespace merivane::translator {

// Lives through one selection of paths. The two texts are not cleared from junction to junction, so
// a junction without a usable fact is pruned with the path of the one before it.
class PathPruning {
 public:
  explicit PathPruning(ModelToProject& state) : state_(state) {}

  // Takes out of the plan what lies behind each link of the fan-out but the one to keep, up to the
  // junction where the paths meet. Works in currentScenarioNum. A circle of links that misses that
  // junction is error 9.
  void Prune(const Value& junctionNum);

 private:
  // Whether the junction has a path fact of its own.
  bool ReadFact(const Value& junctionNum);
  void ReadPath(const std::string& glossary);
  void FindStopJunction();
  Recordset ActivityHere(const Value& useNum);
  bool LeaveOut(Recordset& activity, const Value& destination);
  void RunWorkList();
  void FollowLinksOf(const Value& useNum);
  void CheckRounds(int rounds);

  ModelToProject& state_;
  std::string linkId_;
  std::string junctionDigits_;
  std::optional<int> occurrences_;  // of the project; counted when first needed
};

// Walks forward from the junction in junctionQueue(0) and takes the tasks that it reaches in
// MSP_TASKS out of the plan.
void ExcludeBehindJunction(ModelToProject& state);

}  // namespace merivane::translator
