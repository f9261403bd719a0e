#include "pictures/chart.h"

#include "picture_commands.h"
#include "pictures/picture_file.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::batch {

using namespace pictures;

namespace {

int Draw(Session& session, const ChartOptions& options) {
  std::string reason;
  const auto project = FindProject(ListProjects(session.program.workspace, options.database),
                                   options.project, reason);
  if (!project) return session.Refuse(reason);
  Connection connection(session.program.workspace);
  connection.Open(ConnectionText(options.database), OpenMode::kReadOnly);
  const pictures::Picture chart =
      pictures::DrawChart(connection, *project, session.desktop.Today());
  SayIfSmall(session, options.output,
             pictures::WritePictures({chart}, session.kept.NewOutput(options.output)));
  session.Report(ToUtf8(chart.description) + "; written: " + options.output);
  return kDone;
}

}  // namespace

int RunChart(Session& session, const ChartOptions& options) {
  if (PictureIsRefused(session, {{"the database", options.database}}, options.output,
                       options.force)) {
    return kRefused;
  }
  try {
    return Draw(session, options);
  } catch (const RunTimeError& error) {
    return session.TellFailure(options.database, error);
  }
}

}  // namespace merivane::batch
