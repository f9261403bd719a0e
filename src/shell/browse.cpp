#include "shell/browse.h"

#include <filesystem>

#include "runtime/code_page.h"
#include "runtime/file_names.h"
#include "runtime/text.h"
#include "shell/message_advice.h"

namespace merivane::shell {

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
  const auto status = std::filesystem::status(runtime::PathOf(path), error);
  return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

void ShowTemplateMissing(Desktop& desktop, const std::string& path) {
  desktop.ShowMessage({"Cannot Open Merivane Access Database Template: " + FromUtf8(path)});
}

}  // namespace merivane::shell
