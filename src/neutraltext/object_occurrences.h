// The object occurrences of a process occurrence. Errors go to the caller.
#pragma once

#include <string>

#include "program/program.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

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
