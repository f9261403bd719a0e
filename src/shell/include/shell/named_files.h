// The files of a run by their names: how a browse button takes one, how they are held against each
// other, and how the heads of the sources are read before anything is replaced or changed.
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

// A sentence that refuses the run, or nothing: two names stand for one file (by links of either
// kind too) that the run would write, one that it would write has no folder, or a file stands where
// its word was not said.
std::optional<std::string> RefusalOf(const std::vector<NamedFile>& files);

// False where the file can't be read, is empty or of another kind; the reader's own box was shown.
bool ProveModelText(ModelToProject& state, const std::string& path);
bool ProveMpx(ProjectToModel& state, const std::string& path);

// The same for the whole of a file of planning XML; gives what it holds.
std::optional<mspdi::FilePlan> ProveXml(ProjectToModel& state, const std::string& path);

}  // namespace merivane::shell
