// What a plan says, whichever tables it stands in, with its tasks by the numbers of their units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "store/connection.h"

namespace merivane::reconcile {

using namespace store;

// Texts are Windows-1252. A task without a unit has the negative of its row as its number.
struct PlanContent {
  struct Task {
    std::optional<std::int32_t> row;  // in the plan
    std::size_t place = 0;            // among all tasks, in the order of the outline
    std::string name;
    std::string duration;  // days
    std::string note;      // as NoteText
    std::int32_t parent = 0;
    bool isSummary = false;
  };
  struct Resource {
    std::optional<std::int32_t> row;
    std::string quantity;
    std::string note;
  };
  // Of a predecessor, its successor: "FS", "SS", "FF" or "SF", with the lag behind it. Two that
  // start or finish together stand in the order of their numbers.
  using Relation = std::tuple<std::int32_t, std::int32_t, std::string>;

  std::map<std::int32_t, Task> tasks;
  std::set<Relation> relations;
  std::map<std::string, Resource> resources;                                // by name
  std::map<std::pair<std::int32_t, std::string>, std::string> assignments;  // task, resource: units
};

// The plan that was brought into the database last, from its work tables. Errors of the database
// come up; a row that another program left without a number or a name tells less.
PlanContent PlanThatCameIn(Connection& connection, std::int32_t project);

// The plan that a translation left in the database, from the tables of the plan.
PlanContent TranslatedPlan(Connection& connection, std::int32_t project);

}  // namespace merivane::reconcile
