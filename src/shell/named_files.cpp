#include "shell/named_files.h"

#include <filesystem>

#include "program/error_boxes.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "shell/run_result.h"

namespace merivane::shell {

using namespace mspdi;
using namespace roundtrip;

bool HasExtension(const std::string& name, const std::string& extension) {
  return EqualNoCase(Right(name, 3), extension);
}

std::optional<std::string> BrowseForFile(Desktop& desktop, FileDialog dialog,
                                         const std::string& current, const std::string& extension) {
  dialog.current = current;
  const std::string name = desktop.AskFileName(dialog);
  std::string trimmed = Trim(name);
  if (trimmed.empty()) return std::nullopt;
  if (!HasExtension(name, extension)) {
    desktop.ShowMessage({.text = "Incorrect File Type",
                         .icon = MessageIcon::kCritical,
                         .title = "File Selection Error",
                         .advice = NameAdvice(trimmed)});
    return std::nullopt;
  }
  return trimmed;
}

bool FileIsThere(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(PathOf(path), error);
  return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

void ShowTemplateMissing(Desktop& desktop, const std::string& path) {
  desktop.ShowMessage({"Cannot Open Merivane Access Database Template: " + FromUtf8(path)});
}

std::optional<std::string> RefusalOf(const std::vector<NamedFile>& files) {
  const auto isWritten = [](const NamedFile& file) { return file.use == FileUse::kWrite; };
  for (auto one = files.begin(); one != files.end(); ++one) {
    if (one->path.empty()) continue;
    if (!CanBeFileName(one->path)) return one->role + " can't be a file's name: " + one->path;
    for (auto other = files.begin(); other != one; ++other) {
      if (other->path.empty() || !(isWritten(*one) || isWritten(*other))) continue;
      if (WouldBeSameFile(one->path, other->path)) {
        return other->role + " and " + one->role + " are the same file: " + one->path;
      }
    }
    if (isWritten(*one) && !FolderExists(one->path)) {
      return one->role + " can't be written: there is no folder for " + one->path + ".";
    }
    if (!one->askedWord.empty() && FileIsThere(one->path)) {
      return one->path + " exists: say " + one->askedWord + ".";
    }
  }
  return std::nullopt;
}

bool ProveModelText(ModelToProject& state, const std::string& path) {
  bool proved = false;
  try {
    proved = CheckNeutralTextHeader(state, path);
  } catch (const ProgramEnd&) {
    // Its box has told why.
  }
  ReleaseNeutralTextFile(state);
  return proved;
}

bool ProveMpx(ProjectToModel& state, const std::string& path) try {
  ProveMpxFile(state, path);
  return true;
} catch (const RunTimeError& error) {
  ShowDescription(state.desktop, error);
  return false;
} catch (const ProgramEnd&) {
  return false;
}

std::optional<FilePlan> ProveXml(ProjectToModel& state, const std::string& path) try {
  return ReadPlanFile(path);
} catch (const RunTimeError& error) {
  ShowDescription(state.desktop, error);
  return std::nullopt;
}

}  // namespace merivane::shell
