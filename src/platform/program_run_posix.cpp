#include <unistd.h>

#include <filesystem>

#include "platform/program_run.h"

namespace merivane::platform {

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::string ProgramFolder(const std::string& name) {
  std::error_code error;
  auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) program = std::filesystem::absolute(name, error);
  return program.parent_path().string();
}

void TakeLibrariesOfTheSystemAlone() {}

void RememberFile(const std::string& /*path*/) {}

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

int OnUtf8Terminal(const std::function<int()>& run) { return run(); }

}  // namespace merivane::platform
