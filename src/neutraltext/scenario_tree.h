// What the writers of the scenarios of a plan's outline share. None has a guard of its own, save
// SameScenario: a failure ends the scenario that it happens in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "program/program.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

// Answers of look-ups, which stay the same while a text is written.
struct KnownAnswers {
  std::unordered_map<std::int16_t, std::optional<std::int16_t>> scenarioOf;  // of an element
  std::unordered_map<std::string, bool> isEntity;                            // of an object
};

struct ScenarioTree {
  explicit ScenarioTree(ProjectToModel& owner) : state(owner), out(owner) {}

  // Whether a set of MSP_TASKS has the column, and its value in the row is above 0.
  bool HasStoredProcess(Recordset& tasks);
  bool HasStoredScenario(Recordset& tasks);
  bool HasScenarioColumn(Recordset& tasks);
  bool HasScenarioTable();

  ProjectToModel& state;
  LineWriter out;
  KnownAnswers known;

 private:
  // Asked once: columns and tables do not change while a text is written.
  std::optional<bool> processColumn_;
  std::optional<bool> scenarioColumn_;
  std::optional<bool> scenarioTable_;
};

// The text in front of the last point; empty without a point.
std::string_view ParentOutlineOf(std::string_view outline);

}  // namespace merivane::neutraltext
