#include "shell/modOptions.h"

#include "program/error_boxes.h"
#include "program/program.h"
#include "runtime/code_page.h"
#include "runtime/text.h"

namespace merivane::shell {

using namespace program;

namespace {

constexpr std::size_t kBufferSize =
    2000;  // of the look-up; a longer value is an error of the query

struct PathLine {
  const char* key;
  const char* heading;
  std::size_t indent;  // blanks in front of the value
};

constexpr PathLine kPathLines[] = {
    {kCelvarKey, "Vorn Celvar7 Path: ", 18},
    {kProject2000Key, "MS Project 2000 Path: ", 17},
    {kProject98Key, "MS Project 98 Path: ", 17},
};

}  // namespace

std::string GetCommandPath(const Desktop& desktop, const std::string& keyName) {
  const auto value = desktop.RegistryDefault(keyName);
  if (!value || value->size() > kBufferSize) return "";
  const auto placeholder = static_cast<std::ptrdiff_t>(Find(*value, "%1"));
  return placeholder > 2 ? Left(*value, placeholder - 2) : *value;
}

void ExecuteApp(Desktop& desktop, const std::string& commandLine) {
  const std::string line = commandLine.substr(0, commandLine.find('\0'));
  if (!desktop.StartProgram(line)) {
    desktop.ShowMessage({"Unable to launch '" + FromUtf8(line)});
  }
}

bool HasInnerBlank(const std::string& name, std::size_t length) {
  const std::size_t blank = Find(name, " ");
  return blank >= 1 && blank < length;
}

void frmOptions::Load() {
  listPaths.clear();
  try {
    for (const PathLine& line : kPathLines) {
      // Shown up to its NUL.
      const std::string command = FromUtf8(GetCommandPath(desktop_, line.key).c_str());
      listPaths.emplace_back(line.heading);
      listPaths.push_back(std::string(line.indent, ' ') +
                          (command.empty() ? "not installed." : command));
    }
  } catch (const RunTimeError& error) {
    ShowDescription(desktop_, error);
  }
}

}  // namespace merivane::shell
