// Application paths from the registry, the form that shows them, and the start of programs on a
// file.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop.h"
#include "shell/form.h"

namespace merivane::shell {

inline constexpr const char* kProject2000Key = "MSProject.Project.9\\shell\\open\\command";
inline constexpr const char* kProject98Key = "MSProject.Project.8\\shell\\open\\command";
inline constexpr const char* kCelvarKey = "Celvar7\\shell\\open\\command";

// Commands found by the last look-ups, empty where none was found.
struct ApplicationPaths {
  std::string gProjectPath;
  std::string gCelvarPath;
};

// The command in front of "%1": the placeholder, the character before it and all behind are cut.
// Without the placeholder the whole value with its terminating NUL; empty when the key or its
// default value can't be read or is longer than 2,000 characters.
std::string GetCommandPath(const Desktop& desktop, const std::string& keyName);

// Starts a program without waiting; shows a box when it can't be started. The command line ends at
// its first NUL, as the system reads it.
void ExecuteApp(Desktop& desktop, const std::string& commandLine);

// Position of the first blank lies inside the first `length` - 1 characters.
bool HasInnerBlank(const std::string& name, std::size_t length);

// Shows the paths; they can't be edited here. Caption "Application Paths".
class frmOptions : public Form {
 public:
  static constexpr int kHelpContextId = 4000;
  static constexpr int kHelpButtonContextId = 4001;

  explicit frmOptions(Desktop& desktop) : desktop_(desktop) {}

  std::vector<std::string> listPaths;

  void cmdOK() { Unload(); }

 protected:
  void Load() override;

 private:
  Desktop& desktop_;
};

}  // namespace merivane::shell
