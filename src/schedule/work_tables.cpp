#include <algorithm>
#include <cmath>

#include "plan_tables.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::schedule {

namespace {

// One entry of a list of predecessors: "12", "12SS", "12FS+2d".
struct Entry {
  std::int64_t id = 0;
  LinkKind kind = LinkKind::kFinishToStart;
  Lag lag;
};

Entry EntryOf(std::string_view text) {
  constexpr struct {
    std::string_view word;
    LinkKind kind;
  } kKinds[] = {{"FF", LinkKind::kFinishToFinish},
                {"FS", LinkKind::kFinishToStart},
                {"SF", LinkKind::kStartToFinish},
                {"SS", LinkKind::kStartToStart}};
  Entry entry;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  entry.id =
      static_cast<std::int64_t>(LeadingNumber(text.substr(0, std::min<std::size_t>(digits, 9))));
  text.remove_prefix(digits);
  for (const auto& kind : kKinds) {
    if (!EqualNoCase(text.substr(0, 2), kind.word)) continue;
    entry.kind = kind.kind;
    text.remove_prefix(2);
    break;
  }
  entry.lag = ParseLag(text);
  return entry;
}

void AddLinks(std::string_view list, std::size_t successor, const TaskIndices& indices,
              Plan& plan) {
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const Entry entry = EntryOf(list.substr(0, comma));
    list.remove_prefix(std::min(comma + 1, list.size()));
    const auto predecessor = indices.find(entry.id);
    if (predecessor == indices.end()) continue;
    plan.links.push_back({.predecessor = predecessor->second,
                          .successor = successor,
                          .kind = entry.kind,
                          .lag = entry.lag});
  }
}

}  // namespace

void ReadWorkTables(Connection& connection, std::int32_t project, Plan& plan) {
  enum Column { kPid, kName, kDuration, kOutline, kPredecessor, kText1 };
  ProjectRows rows(connection, {.name = "ProjectAct", .projectColumn = "Msp_ProjID"}, project,
                   {"PID", "Name", "Duration", "Outline", "Predecessor", "Text1"});
  TaskIndices indices;
  std::vector<std::string> predecessors;
  for (; !rows.AtEnd(); rows.Next()) {
    PlanTask task;
    task.uid = task.id = rows.IntegerAt(kPid, 0);
    task.name = rows.TextAt(kName);
    task.level = rows.IntegerAt(kOutline, 1);
    if (task.id <= 0 || task.level <= 0) continue;
    if (!indices.emplace(task.uid, plan.tasks.size()).second) continue;
    if (const Value days = rows.At(kDuration); IsNumeric(days)) {
      task.duration = std::llround(std::max(0.0, ToDouble(days)) * kTenthsOfDay);
    }
    if (const std::int64_t number = rows.IntegerAt(kText1, 0); number > 0) task.occurrence = number;
    plan.tasks.push_back(std::move(task));
    predecessors.push_back(rows.TextAt(kPredecessor));
  }
  for (std::size_t task = 0; task < predecessors.size(); ++task) {
    AddLinks(predecessors[task], task, indices, plan);
  }
}

}  // namespace merivane::schedule
