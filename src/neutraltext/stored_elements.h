// Records written from the interim tables, alike in the plan's own text and in that of a rebuilt
// model. Errors go to the caller, save where told.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "program/program.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

enum class ModelText { kDirect, kRebuilt };

// Scenario head from a row of Scenario. The direct text takes type and creator of a child scenario
// from the row, has a line for each Null block and fails on a Null ID.
void WriteStoredScenarioHead(LineWriter& out, Recordset& scenario, ModelText text);

// Junctions of a scenario.
void WriteStoredJunctions(ProjectToModel& state, std::int16_t scenarioNum, Connection* connection);

// Answers of SameScenario's look-ups, which stay the same while a text is written.
using ScenarioOfElement = std::unordered_map<std::int16_t, std::optional<std::int16_t>>;

// 1 when the two occurrences or junctions lie in the same scenario, else 0. Has its own guard,
// which shows the description and answers 0: a Null scenario number is such a failure.
int SameScenario(ProjectToModel& state, std::int16_t originNum, std::int16_t destinationNum,
                 Connection* connection, ScenarioOfElement& known);

// Links of a scenario, those that leave it left out.
void WriteStoredLinks(ProjectToModel& state, std::int16_t scenarioNum, Connection* connection,
                      ScenarioOfElement& known);

// The process occurrence whose object occurrences are written. Each answer is asked for when its
// line or statement is due.
class ObjectOccurrenceOwner {
 public:
  ObjectOccurrenceOwner() = default;
  ObjectOccurrenceOwner(const ObjectOccurrenceOwner&) = delete;
  ObjectOccurrenceOwner& operator=(const ObjectOccurrenceOwner&) = delete;
  virtual ~ObjectOccurrenceOwner() = default;

  virtual std::string ScenarioNum() = 0;
  virtual std::string OccurrenceNum() = 0;
  virtual Value Duration() = 0;
  // The scenario in which resources brought from the plan are looked for.
  virtual std::string BroughtScenarioNum() = 0;
  // Statement that finds the resource of such an object, and the column of its alias where it is
  // not the first term.
  virtual std::string BroughtResource(const std::string& objectNum, const std::string& project) = 0;
  virtual const char* LaterAlias() const = 0;
};

void WriteObjectOccurrencesOf(ProjectToModel& state, ObjectOccurrenceOwner& owner,
                              Connection* connection);

}  // namespace merivane::neutraltext
