#include "mspdi/plan_writer.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "session.h"
#include "shell/browse.h"

namespace merivane::batch {

using namespace mspdi;

namespace {

// What the database holds that can't be, in one message.
void TellLeftOut(Session& session, const std::vector<std::string>& warnings) {
  if (warnings.empty()) return;
  std::string text = "Not everything of the plan can be as the database has it:";
  for (const std::string& warning : warnings) text += "\n" + warning;
  session.desktop.ShowMessage(
      {.text = text, .icon = MessageIcon::kExclamation, .title = "Planning XML"});
}

int Export(Session& session, const ExportOptions& options) {
  std::string reason;
  const auto project = FindProject(ListProjects(session.program.workspace, options.database),
                                   options.project, reason);
  if (!project) return session.Refuse(reason);
  Connection connection(session.program.workspace);
  connection.Open(ConnectionText(options.database), OpenMode::kReadOnly);
  const mspdi::WrittenCounts counts = mspdi::WritePlan(
      connection, *project, session.desktop.Today(), session.kept.NewOutput(options.xml));
  TellLeftOut(session, counts.warnings);
  session.Report(std::to_string(counts.tasks) + " tasks, " + std::to_string(counts.resources) +
                 " resources, " + std::to_string(counts.links) + " links, " +
                 std::to_string(counts.assignments) + " assignments; written: " + options.xml +
                 session.Notes());
  return session.StatusOf(true);
}

}  // namespace

int RunExport(Session& session, const ExportOptions& options) {
  if (!HasExtension(options.xml, "xml")) {
    return session.Refuse(options.xml + " is no name of planning XML: .xml.");
  }
  if (!session.Admits(
          {{"the database", options.database},
           {"--xml", options.xml, true, options.force ? "" : "--force to replace it"}})) {
    return kRefused;
  }
  try {
    return Export(session, options);
  } catch (const RunTimeError& error) {
    return session.TellFailure(options.database, error);
  }
}

}  // namespace merivane::batch
