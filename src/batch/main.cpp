#include <csignal>
#include <iostream>

#include "batch/batch.h"
#include "platform/program_run.h"
#include "store/connection.h"

namespace {

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
  using namespace merivane::platform;
  TakeLibrariesOfTheSystemAlone();
  IgnoreFailedWrites();
  ListenForEnd();
  merivane::store::Workspace::LeaveOutLocks();
  const int status = OnUtf8Terminal([&] {
    return merivane::batch::RunBatch(ProgramArguments(argc, argv),
                                     ProgramFolder(argc > 0 ? argv[0] : ""), std::cout, std::cerr,
                                     {.terminal = StandardErrorIsTerminal()});
  });
  if (status == merivane::batch::kFailed || status == merivane::batch::kRefused) {
    EndAsAsked();
  }
  return status;
} catch (const std::exception& error) {
  std::cerr << "merivane-batch: " << error.what() << '\n';
  return merivane::batch::kFailed;
}
