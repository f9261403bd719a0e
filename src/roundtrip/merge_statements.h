// Rows of the project and scenario under merge: what the steps of the merge ask for and add.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "program/model_words.h"
#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// Pieces of statements that restrict to the project under work.
std::string WhereMspProjId(const ProjectToModel& state);
std::string AndMspProjId(const ProjectToModel& state);
std::string AndProjId(const ProjectToModel& state);

// Statements over the links or junctions of gCurrentScenario. `piece` stands straight behind the
// scenario's number and before `number`, whose Null is empty text (and so breaks the statement).
std::string LinksWhere(const ProjectToModel& state, std::string_view piece, const Value& number);
std::string JunctionsWhere(const ProjectToModel& state, std::string_view piece,
                           const Value& number);

// The number in the model (Text1) of the plan task `pid`; nothing where the plan doesn't know the
// task, or it has none. Error 6 for a number beyond 16 bits.
std::optional<std::int16_t> OccurrenceOfPlanTask(ProjectToModel& state, std::int16_t pid);

// Whether the scenario has a junction of that number, and the type text of a link's end.
bool IsJunction(ProjectToModel& state, std::int16_t number);
std::string_view EndType(ProjectToModel& state, std::int16_t number);

// A fresh question for EOF and BOF: false when either holds.
bool HasRow(Recordset& rows);

// Carries out the end behind the step, and also where that fails, unless what it had written is
// undone: what a merge keeps beside the tables stands in them however it ends. The first failure
// counts.
template <class Step, class End>
void WithEnd(const ProjectToModel& state, Step step, End end) {
  const Connection& tables = *state.gInterimConn;
  const std::uint64_t undone = tables.Undone();
  try {
    step();
  } catch (...) {
    try {
      if (tables.Undone() == undone) end();
    } catch (...) {
      // The tables can't be written any more.
    }
    throw;
  }
  end();
}

// Case counts; Null is empty text.
bool TextIs(const Value& value, std::string_view text);

// The greatest numbers of the project, read from its row once (error 3021 without one) and kept
// until StoreNumbers writes them into it.
GreatestNumbers& NumbersOf(ProjectToModel& state);
void StoreNumbers(ProjectToModel& state);

// The project's counter of occurrences, junctions and links. Numbers that were taken count only
// once they're written back.
class NumberCounter {
 public:
  explicit NumberCounter(ProjectToModel& state);
  std::int16_t Next();  // error 6 beyond 32,767
  void WriteBack() { greatest_ = last_; }

 private:
  std::int16_t& greatest_;
  std::int16_t last_;
};

// Adds a junction under the counter's next number, which is the result.
std::int16_t AddJunction(const ProjectToModel& state, NumberCounter& numbers,
                         std::string_view cardinality, std::string_view type);

struct NewLink {
  std::int16_t origin = 0;
  std::int16_t destination = 0;
  std::string_view originType;
  std::string_view destinationType;
  std::string_view originTypeColumn = "Origin_Type";
  std::string_view destinationTypeColumn = "Destination_Type";
  std::string_view type = {};  // empty: the column stays Null
};
void AddLink(const ProjectToModel& state, NumberCounter& numbers, const NewLink& link);

// Adds a link whose two type texts tell which end is a junction of the scenario.
void AddLinkBetween(ProjectToModel& state, NumberCounter& numbers, std::int16_t origin,
                    std::int16_t destination);

// Moves one end of the current row of `link` to a junction; the end's name becomes empty. Saved.
void RepointOrigin(Recordset& link, std::int16_t junction);
void RepointDestination(Recordset& link, std::int16_t junction);

// "Error in Translation", and the program ends.
[[noreturn]] void EndOnBrokenModel(ProjectToModel& state, const std::string& title);

}  // namespace merivane::roundtrip
