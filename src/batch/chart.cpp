#include "pictures/chart.h"

#include <optional>
#include <utility>

#include "mspdi/plan_reader.h"
#include "pictures/picture_file.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "session.h"

namespace merivane::batch {

using namespace pictures;

namespace {

// The plan as it was, from an XML file or from another database.
DatedPlan ReadBefore(const Session& session, const std::string& path, std::int32_t project) {
  const DateTime today = session.desktop.Today();
  if (UpperCase(path).ends_with(".XML")) {
    const mspdi::FilePlan file = mspdi::ReadPlanFile(path);
    return DatedPlanOf(mspdi::PlanOfFile(file, today), mspdi::StoredDatesOf(file), today);
  }
  Workspace workspace;
  Connection connection(workspace);
  connection.Open(ConnectionText(path), OpenMode::kReadOnly);
  return ReadDatedPlan(connection, project, today);
}

int Draw(Session& session, const ChartArguments& options) {
  std::string reason;
  const auto project = FindProject(ListProjects(session.program.workspace, options.database),
                                   options.project, reason);
  if (!project) return session.Refuse(reason);
  Connection connection(session.program.workspace);
  connection.Open(ConnectionText(options.database), OpenMode::kReadOnly);
  const DatedPlan plan = ReadDatedPlan(connection, *project, session.desktop.Today());
  pictures::ChartOptions drawn{.columns = options.columns,
                               .foot = FootOf(session, options.database)};
  std::optional<DatedPlan> before;
  try {
    if (!options.against.empty()) before = ReadBefore(session, options.against, *project);
  } catch (const RunTimeError& error) {
    return session.TellFailure(options.against, error);
  }
  if (before) drawn.before = &*before;
  const pictures::Picture chart = DrawChart(plan, drawn);
  SayIfSmall(session, options.output,
             pictures::WritePictures({chart}, session.kept.NewOutput(options.output)));
  session.Report(ToUtf8(chart.description) + "; written: " + options.output);
  return kDone;
}

}  // namespace

int RunChart(Session& session, const ChartArguments& options) {
  std::vector<NamedFile> sources{{"the database", options.database}};
  if (!options.against.empty()) sources.push_back({"--against", options.against});
  if (PictureIsRefused(session, std::move(sources), options.output, options.force)) {
    return kRefused;
  }
  try {
    return Draw(session, options);
  } catch (const RunTimeError& error) {
    return session.TellFailure(options.database, error);
  }
}

}  // namespace merivane::batch
