// A run that the user may cancel.
//
//   CancellableRun run;
//   run.take = [this] { return TakeDatabase(); };  // Connection::BeginWrite, or False behind a box
//   run.targets = {.database = "plan.mdb", .outputs = {"plan.mpx"}};
//   run.driver = [&] { return GenerateFromText(state, "model.txt", "plan.mpx"); };
//   run.drop = [this] { DropRun(); };
//   const RunEnd end = RunUntilCancelled(state, run);
//
// The functions are the caller's. Each is called at most once, before RunUntilCancelled returns, so
// that they may hold references to what lives that long. Paths are UTF-8.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "program/program.h"
#include "shell/kept_files.h"

namespace merivane::shell {

using namespace program;

struct RunTargets {
  std::string database;  // that the run changes; empty: none is kept
  Copy copy = Copy::kUntilDone;
  std::vector<std::string> outputs = {};  // that it writes anew, by TextFiles or its OutputOf
};

struct CancellableRun {
  std::function<bool()> take;  // gets hold of the database; False ends the run. May be missing
  RunTargets targets;
  std::function<bool()> driver;  // does the work; False: not to its end
  std::function<void()> drop;    // closes the databases and files of the run, wherever it was
  bool undoesFailure = false;    // an error of the driver puts the targets back, as Cancel does
};

struct RunEnd {
  std::optional<bool> done;  // what the driver, or `take`, gave; nothing where it was cancelled
  std::string backupName;    // of the database, empty without one
};

// Takes the database, keeps the targets, runs the driver and commits what it wrote. Cancel ends it:
// `drop` is called, and the targets are as they were; a box tells what can't be put back. Every
// other end leaves what was written so far. That is so for an error or the end of the program too,
// which come up, but for three: outputs of a run without a database are put back, behind `drop`,
// and all targets are where KeptFiles::Finish fails, or where the run undoes a failure.
RunEnd RunUntilCancelled(const Direction& direction, const CancellableRun& run);

}  // namespace merivane::shell
