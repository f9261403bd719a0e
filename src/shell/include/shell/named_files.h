// The files of a run by their names: how a browse button takes one, how they are held against each
// other, and how the heads of the sources are read before anything is replaced or changed.
//
//   const std::vector<NamedFile> files = {
//       {"the model", "model.txt"}, {"--mpx", "plan.mpx", FileUse::kWrite, "--force"}};
//   if (const auto refusal = RefusalOf(files)) return Refuse(*refusal);
//   if (!ProveModelText(program.modelToProject, "model.txt")) return false;  // a box has told why
//
// Nothing here writes. What a proof reads is read anew by the run, but for planning XML. Paths are
// UTF-8.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mspdi/plan_reader.h"
#include "neutraltext/modGlobal.h"
#include "platform/desktop.h"
#include "runtime/file_names.h"

namespace merivane::shell {

using namespace neutraltext;

// True when the last three characters are the extension, in any case.
bool HasExtension(const std::string& name, const std::string& extension);

// Asks for a file name; `current` is the one chosen so far. Nothing when the dialog was cancelled,
// or when the last three characters are not the extension (any case), which shows a box. Otherwise
// the name without outer blanks.
std::optional<std::string> BrowseForFile(Desktop& desktop, FileDialog dialog,
                                         const std::string& current, const std::string& extension);

// True for a file that is there; False for a folder and for nothing.
bool FileIsThere(const std::string& path);

// "Cannot Open Merivane Access Database Template: " and the path.
void ShowTemplateMissing(Desktop& desktop, const std::string& path);

// A file that a run was given.
struct NamedFile {
  std::string role;  // as the user knows it: "the model", "--mpx"
  std::string path;  // UTF-8, trimmed; empty: not given
  FileUse use = FileUse::kRead;
  std::string askedWord = {};  // must be said where a file stands already; empty: nothing
};

// A sentence (UTF-8) that refuses the run, or nothing: a name that no file can have, two names for
// one file (by links of either kind too) that the run would write, one that it would write without
// a folder, or a file that stands where its word was not said.
std::optional<std::string> RefusalOf(const std::vector<NamedFile>& files);

// False where the file can't be read, is empty or of another kind; the reader's own box was shown.
bool ProveModelText(ModelToProject& state, const std::string& path);
bool ProveMpx(ProjectToModel& state, const std::string& path);

// The same for the whole of a file of planning XML. Gives what it holds, which a merge takes so
// that it isn't read twice (TranslateXml, MergeCompletely); nothing behind a box.
std::optional<mspdi::FilePlan> ProveXml(ProjectToModel& state, const std::string& path);

}  // namespace merivane::shell
