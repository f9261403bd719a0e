#include "shell/cancellable_run.h"

#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::shell {

namespace {

void Keep(const Direction& direction, const RunTargets& targets, KeptFiles& kept) {
  if (!targets.database.empty()) {
    kept.KeepDatabase(direction.workspace, targets.database, targets.copy);
  }
  for (const std::string& output : targets.outputs) {
    try {
      kept.NewOutput(direction.files, output);
    } catch (const RunTimeError&) {
      // The driver fails on it in its own way.
    }
  }
}

void PutBack(const Direction& direction, KeptFiles& kept) {
  for (const std::string& failure : kept.PutBack()) {
    direction.desktop.ShowMessage({FromUtf8(failure), MessageIcon::kExclamation});
  }
}

}  // namespace

RunEnd RunUntilCancelled(const Direction& direction, const CancellableRun& run) {
  KeptFiles kept;
  bool isUndone =
      run.undoesFailure || (run.targets.database.empty() && !run.targets.outputs.empty());
  try {
    const Progress::Run progress(direction.progress);
    bool done = !run.take || run.take();
    if (done) {
      Keep(direction, run.targets, kept);
      done = run.driver();
    }
    direction.workspace.CommitAll();
    RunEnd end{done, kept.BackupName()};
    isUndone = true;  // where an output can't take its place
    kept.Finish();
    return end;
  } catch (const RunCancelled&) {
    run.drop();
    PutBack(direction, kept);
    return {};
  } catch (...) {
    if (isUndone) {
      run.drop();
      PutBack(direction, kept);
    }
    kept.Finish();
    throw;
  }
}

}  // namespace merivane::shell
