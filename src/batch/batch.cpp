#include "batch/batch.h"

#include "guarded.h"
#include "session.h"

namespace merivane::batch {

namespace {

int RunCommand(Session& session, const CommandLine& line) {
  switch (line.command) {
    case Command::kToProject:
      return RunToProject(session, line.toProject);
    case Command::kToModel:
      return RunToModel(session, line.toModel);
    case Command::kCheck:
      return RunCheck(session, line.check);
    case Command::kExport:
      return RunExport(session, line.exported);
    case Command::kDiff:
      return RunDiff(session, line.diff);
    case Command::kDraw:
      return RunDraw(session, line.draw);
    case Command::kChart:
      return RunChart(session, line.chart);
    case Command::kReport:
      return RunReport(session, line.report);
    case Command::kProjects:
      break;
  }
  return RunProjects(session, line.projects);
}

}  // namespace

int RunBatch(const std::vector<std::string>& arguments, const std::string& programFolder,
             std::ostream& out, std::ostream& err, const RunSetting& setting) {
  return Guarded(err, [&] {
    CommandLine line;
    if (const auto status = ReadCommandLine(arguments, line, out, err)) return *status;
    Session session(line.common, programFolder, out, err, setting);
    return session.Run([&] { return RunCommand(session, line); });
  });
}

}  // namespace merivane::batch
