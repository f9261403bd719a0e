// What a plan says, whichever tables it stands in, with its tasks by the numbers of their units,
// and how values of two rows, one of which may come from another program, are held together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/value.h"
#include "store/connection.h"

namespace merivane::reconcile {

using namespace runtime;
using namespace store;

// Any column may hold Null, or in a database of another program a text: such a row tells less, and
// stops nothing.
std::optional<std::int32_t> NumberIn(const Value& value);

// A note without the quotes around it, of which each way through an MPX file may leave one more,
// and without the line ends behind it.
std::string NoteText(std::string text);

// Numbers by their value. A text that is none is 1: a duration that isn't given is the plan's one
// day.
bool IsSameNumber(const std::string& a, const std::string& b);

// Texts are Windows-1252. A task without a unit has the negative of its row as its number.
struct PlanContent {
  struct Task {
    std::optional<std::int32_t> row;  // in the plan
    std::size_t place = 0;            // among all tasks, in the order of the outline
    std::string name;
    std::string duration;  // days
    std::string note;      // as NoteText
    std::int32_t parent = 0;
    std::int32_t scenario = 0;  // of a translated plan
    bool isSummary = false;
  };
  struct Resource {
    std::optional<std::int32_t> row = {};  // of a translated plan the UID
    std::string quantity = {};
    std::string note = {};
    bool lacksAlias = false;               // its object in the model that the plan came into
    std::optional<std::int64_t> uid = {};  // in the file, where that has any
  };
  // Of a predecessor, its successor: "FS", "SS", "FF" or "SF", with the lag behind it. Two that
  // start or finish together stand in the order of their numbers.
  using Relation = std::tuple<std::int32_t, std::int32_t, std::string>;

  std::map<std::int32_t, Task> tasks;
  std::set<Relation> relations;
  std::map<std::string, Resource> resources;                     // by name
  std::map<std::string, std::optional<std::int32_t>> namesakes;  // rows of others of these names
  std::map<std::pair<std::int32_t, std::string>, std::string> assignments;  // task, resource: units
};

// The plan that was brought into the database last, from its work tables. Errors of the database
// come up; a row that another program left without a number or a name tells less.
PlanContent PlanThatCameIn(Connection& connection, std::int32_t project);

// The plan that a translation left in the database, from the tables of the plan.
PlanContent TranslatedPlan(Connection& connection, std::int32_t project);

// Tasks by their numbers; 0 in front of the first one.
struct MovedTask {
  std::int32_t task = 0;
  std::int32_t behind = 0;       // in the plan
  std::int32_t otherBehind = 0;  // in the other one
};

// The fewest tasks that have to move, each with what follows it there, before those of each summary
// task stand as in `other`. Only tasks that lie below the same one in both are held against each
// other.
std::vector<MovedTask> MovedTasks(const PlanContent& plan, const PlanContent& other);

}  // namespace merivane::reconcile
