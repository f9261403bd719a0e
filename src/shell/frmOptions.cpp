#include "shell/frmOptions.h"

#include "program/error_boxes.h"
#include "program/program.h"
#include "runtime/code_page.h"
#include "shell/modOptions.h"

namespace merivane::shell {

using namespace program;

namespace {

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
