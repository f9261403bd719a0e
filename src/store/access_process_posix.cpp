#include <cstdlib>
#include <exception>
#include <new>
#include <optional>
#include <string>

#include "access_copy.h"
#include "runtime/child_process.h"
#include "runtime/run_time_error.h"

namespace merivane::store {

using namespace runtime;

namespace {

const std::string kDone = "done";

// In the child.
void CopyAndReport(const std::string& path, const std::string& sqlitePath, int pipe) {
  const auto report = [&](const std::string& text) { SendOrExit(pipe, text.data(), text.size()); };
  unsetenv("MDBICONV");  // would change the character set of texts
  try {
    Confine(path, sqlitePath);
    WorkListener nobody;
    CopyAccessTables(path, sqlitePath, nobody);
    report(kDone);
  } catch (const std::bad_alloc&) {
    report(kTooLarge);
  } catch (const std::exception& error) {
    report(error.what());
  }
}

}  // namespace

std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  WorkListener& work) {
  const AccessLimits limits = LimitsFor(path);
  std::optional<ForkedChild> child;
  try {
    child.emplace([&](int pipe) { CopyAndReport(path, sqlitePath, pipe); },
                  ChildLimits{.memoryBytes = limits.memory,
                              .cpuSeconds = static_cast<std::uint64_t>(limits.cpu.count()),
                              .fileBytes = limits.bytes});
  } catch (const RunTimeError&) {
    return kNoProcess;
  }
  const auto deadline = ForkedChild::Clock::now() + limits.wall;
  const auto report = child->ReceiveAll(deadline, [&work] { work.Beat(); });
  if (!report || child->HasUsedUpItsTime()) return kEndless;
  if (*report == kDone) return {};
  return report->empty() ? kDamaged : *report;
}

}  // namespace merivane::store
