// The pass from the interim tables to tasks, resources, links and assignments, and what it begins
// with where the model stands in a database already.
//
//   ModelToProject& state = program.modelToProject;
//   state.gMspProjId = 1;
//   state.gOverwriteDb = true;
//   OpenInterimDb(program.workspace, state.gMspConn, state.gOverwriteDb, "next.mdb");
//   TakeStoredModel(state, {"plan.mdb", 1});  // or ReadNeutralText(state, "model.txt")
//   TranslateToProject(state, "next.mpx");
//
// Rows of gMspProjId go in and come out in one database. A task's duration is tenths of a minute in
// its table, of eight hours a day, and days in the MPX file. The state owns the connection and the
// files; a listener is its maker's and outlives the translation. A failure shows its box and comes
// as ProgramEnd; rows that were written by then stay until the connection's owner undoes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "program/error_boxes.h"
#include "program/program.h"
#include "runtime/rtf_notes.h"
#include "runtime/value.h"

namespace merivane::translator {

using namespace program;

// Writes the plan of gMspProjId into the MSP_ tables of gMspConn and, where a name is given, side
// by side into an MPX file, which stays open (flushed) until the program ends. Any failure ends the
// program through FatalAbort.
void TranslateToProject(ModelToProject& state, const std::string& mpxFileName);

// How much of a resource a labor rule asks for: the digit that stands one character behind its
// alias; "1" for anything else.
std::string UnitsInRule(const std::string& rule, const std::string& alias);

// The project of another database whose model is translated.
struct StoredModel {
  std::string database;
  std::int32_t project = 0;
};

// Whether there is a scenario of that project. Errors of the database come up as RunTimeErrors.
bool HoldsModel(Workspace& workspace, const StoredModel& model);

// In the place of a read: brings the model as gMspProjId into gMspConn, without the marks of an
// earlier translation. Of one that was merged or built from a plan, units and resources are those
// of its plan tables, as its text has them. Errors of either database come up.
void TakeStoredModel(ModelToProject& state, const StoredModel& model);

// Behind the translation: the start date that a plan brought in, where there is one. A plan's text
// has no head for a model that has a start date before.
void TakeStartDate(ModelToProject& state, const StoredModel& model);

// Of the note of a task, which is a glossary in RTF.
inline constexpr std::size_t kMostNoteBytes = 20000;

// Characters of the longest glossary that a note takes; a longer one ends the translation.
inline constexpr std::size_t kLongestGlossary =
    kMostNoteBytes - kRtfNoteHead.size() - kRtfNoteTail.size();

enum class PlanRow { kTask, kLink, kAssignment };

// Hears which path the translator takes behind each fan-out that offers several, and what it adds
// to the plan.
class TranslationListener {
 public:
  virtual ~TranslationListener() = default;

  // The path behind this junction is looked for.
  virtual void OnFanOut(const Value& junctionNum) = 0;
  // `ownFact`: a path fact of the junction was read. The path leads along the link of that ID to
  // the junction "J" and the digits; nothing is left out while the two are not both numbers.
  virtual void OnPath(bool ownFact, const std::string& linkId,
                      const std::string& junctionDigits) = 0;
  // All paths are taken, and the units numbered. False ends the translation without tasks.
  virtual bool OnPathsTaken() = 0;
  // A row comes next, and nothing more can fail on its way. Whether it goes into the database.
  virtual bool OnRow(PlanRow row) = 0;
  // All tasks have been told of. False ends the translation without their outline numbers.
  virtual bool OnTasksWritten() = 0;
};

}  // namespace merivane::translator
