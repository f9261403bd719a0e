// A run that the user may cancel.
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
  std::vector<std::string> outputs = {};  // that it writes anew
};

struct CancellableRun {
  std::function<bool()> take;  // gets hold of the database; False ends the run. May be missing
  RunTargets targets;
  std::function<bool()> driver;
  std::function<void()> drop;  // closes what the driver opened
};

struct RunEnd {
  std::optional<bool> done;  // what the driver gave; nothing where the run was cancelled
  std::string backupName;    // of the database, empty without one
};

// Takes the database, keeps the targets, runs the driver and commits what it wrote. Cancel ends it:
// the targets are as they were, and outputs whose run found no database open are too. Every other
// end, an error too, leaves what was written so far.
RunEnd RunUntilCancelled(const Direction& direction, const CancellableRun& run);

}  // namespace merivane::shell
