#include <csignal>
#include <filesystem>
#include <iostream>

#include "batch/batch.h"
#include "platform/terminal.h"

namespace {

std::string ProgramFolder(const char* argument) {
  std::error_code error;
  auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) program = std::filesystem::absolute(argument, error);
  return program.parent_path().string();
}

// A full quota and a closed pipe are failures that are told, and no end in the middle of a run.
void IgnoreFailedWrites() {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);
#endif
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

}  // namespace

int main(int argc, char** argv) try {
  IgnoreFailedWrites();
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return merivane::batch::RunBatch(arguments, ProgramFolder(argc > 0 ? argv[0] : ""), std::cout,
                                   std::cerr, merivane::platform::StandardErrorIsTerminal());
} catch (const std::exception& error) {
  std::cerr << "merivane-batch: " << error.what() << '\n';
  return merivane::batch::kFailed;
}
