#include "program/error_boxes.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/run_time_error.h"
#include "shell/named_files.h"

namespace merivane::shell {

using namespace mspdi;
using namespace roundtrip;

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

std::optional<mspdi::FilePlan> ProveXml(ProjectToModel& state, const std::string& path) try {
  return mspdi::ReadPlanFile(path);
} catch (const RunTimeError& error) {
  ShowDescription(state.desktop, error);
  return std::nullopt;
}

}  // namespace merivane::shell
