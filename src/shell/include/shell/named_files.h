// The files that a run was given, before it replaces or changes anything: their names are held
// against each other, and the heads of its sources read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mspdi/plan_reader.h"
#include "neutraltext/modGlobal.h"

namespace merivane::shell {

struct NamedFile {
  std::string role;  // as the user knows it: "the model", "--mpx"
  std::string path;  // UTF-8, trimmed; empty: not given
  bool written = false;
  std::string askedWord = {};  // must be said where a file stands already; empty: nothing
};

// A sentence that refuses the run, or nothing: two names stand for one file (by links of either
// kind too) that the run would write, one that it would write has no folder, or a file stands where
// its word was not said.
std::optional<std::string> RefusalOf(const std::vector<NamedFile>& files);

using namespace neutraltext;

// False where the file can't be read, is empty or of another kind; the reader's own box was shown.
bool ProveModelText(ModelToProject& state, const std::string& path);
bool ProveMpx(ProjectToModel& state, const std::string& path);

// The same for the whole of a file of planning XML; gives what it holds.
std::optional<mspdi::FilePlan> ProveXml(ProjectToModel& state, const std::string& path);

}  // namespace merivane::shell
