// From an MPX or XML file back into the model: the driver of both modes.
//
//   ProjectToModel& state = program.projectToModel;
//   state.gInterimConn = std::make_unique<Connection>(program.workspace);
//   state.gInterimConn->Open(ConnectionText("plan.mdb"));
//   state.gInterimProjId = 1;
//   state.gOutFile = program.files.FreeFile();
//   program.files.OpenForOutput(state.gOutFile, "merged.txt");
//   const bool merged = TranslateXml(state, "plan.xml", -1);
//
// A plan's file goes in; the rows of the model change, and a Neutral Text comes out. Durations
// become the model's days. Texts are Windows-1252, paths UTF-8. The state owns connection and
// files; a listener is its maker's and outlives the call. A failure is told in a box and the result
// is False; what the merge had changed by then is its caller's to undo.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "mspdi/plan_reader.h"
#include "program/program.h"
#include "runtime/value.h"

namespace merivane::roundtrip {

using namespace program;

enum class MergeStep {
  kTask,   // name, duration, notes, place in the outline
  kLinks,  // predecessors
};

// What would end the merge. Texts are Windows-1252.
struct MergeStop {
  std::string kind = {};                    // "task", "resource"; empty: not known yet
  std::optional<std::int32_t> number = {};  // of the row in the plan
  std::string name = {};
  std::size_t line = 0;                // of an MPX file, from 1, 0 in another source
  std::string text = {};               // of that line
  std::optional<MergeStep> step = {};  // none: the plan was being read
};

// A merge that is tried out: its listener hears how far it has come, and it goes on behind what
// would end it, so that one try tells everything.
class MergeListener {
 public:
  virtual ~MergeListener() = default;

  // The next line of an MPX file. What is left in it is read.
  virtual void OnLine(std::size_t number, std::string& line) = 0;

  // The step begins for the task with this number in the plan. False leaves it out.
  virtual bool OnTask(MergeStep step, std::int32_t planId) = 0;

  // A box has just told what would end the merge there; it goes on with what stands behind.
  virtual void OnStop(const MergeStop& stop) = 0;
};

// Reads the file into the work tables of gInterimConn, folds the plan into the model (mergeFlag -1)
// or builds a new one from it (mergeFlag 0), and writes the Neutral Text to gOutFile. True when it
// ran to its end without reaching its error trap and wrote a project. A failure shows its
// description; name rules and the merge's fatal reports end the program.
// `interimFileName` is handed over and not used. With a listener the merge is tried out: it goes on
// behind what would end it, so that what it leaves is no merged model where the listener heard of a
// stop, whatever the result.
bool TranslateMpx(ProjectToModel& state, const std::string& mpxFileName,
                  const std::string& interimFileName, std::int16_t mergeFlag,
                  MergeListener* listener = nullptr);

// Read the file into the work tables of gInterimConn alone. Failures: as of the two translations;
// with a listener the reading goes on behind them where it can.
bool ReadMpx(ProjectToModel& state, const std::string& mpxFileName, MergeListener* listener);
bool ReadXml(ProjectToModel& state, const std::string& xmlFileName, MergeListener* listener);

// Reads the file's head, up to where its layout shows. Errors come up; a file of another kind ends
// the program with its box.
void ProveMpxFile(ProjectToModel& state, const std::string& mpxFileName);

// The same from planning XML. Nothing in the database has changed where the file can't be read, a
// name can't stand in the model, or a merge has nothing to hold on to (no task bears the number of
// an occurrence, or two bear the same one): each is told in a box with the row, and the result is
// False. Characters that the model can't hold are counted in a box. `ahead`: what the file holds,
// where it was read already.
bool TranslateXml(ProjectToModel& state, const std::string& xmlFileName, std::int16_t mergeFlag,
                  MergeListener* listener = nullptr, std::optional<mspdi::FilePlan> ahead = {});

// What planning XML holds; none of an MPX file, which is read line by line. While it is read it
// takes three times the file, which is better spent before databases lie in memory.
std::optional<mspdi::FilePlan> ReadAhead(const std::string& fileName);

// The first step alone: the file, or what was read of it ahead, into the work tables of
// gInterimConn, as for a merge. Errors and ends come up as they do there, but for a plan without a
// known number; with a listener, what can't be taken is passed over.
void TakePlan(ProjectToModel& state, const std::string& fileName,
              std::optional<mspdi::FilePlan> ahead, MergeListener* listener);

}  // namespace merivane::roundtrip
