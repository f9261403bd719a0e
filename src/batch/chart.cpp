#include "pictures/chart.h"

#include <optional>
#include <utility>

#include "inspect/differences.h"
#include "mspdi/plan_reader.h"
#include "pictures/picture_file.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "session.h"

namespace merivane::batch {

using namespace pictures;

namespace {

DatedPlan ReadDatabase(Workspace& workspace, const std::string& path, std::int32_t project,
                       const DateTime& today) {
  Connection connection(workspace, path, OpenMode::kReadOnly);
  return ReadDatedPlan(connection, project, today);
}

// The plan as it was, from an XML file or from another database.
DatedPlan ReadBefore(const Session& session, const std::string& path, std::int32_t project) {
  const DateTime today = session.desktop.Today();
  if (inspect::KindOfFile(path) == inspect::FileKind::kXml) {
    const mspdi::FilePlan file = mspdi::ReadPlanFile(path);
    return DatedPlanOf(mspdi::PlanOfFile(file, today), mspdi::StoredDatesOf(file), today);
  }
  Workspace workspace;
  return ReadDatabase(workspace, path, project, today);
}

int Draw(Session& session, const ChartArguments& options) {
  std::string reason;
  const auto project = FindProject(ListProjects(session.program.workspace, options.database),
                                   options.project, reason);
  if (!project) return session.Refuse(reason);
  std::optional plan =
      ReadDatabase(session.program.workspace, options.database, *project, session.desktop.Today());
  pictures::ChartOptions drawn{.columns = options.columns,
                               .foot = FootOf(session, options.database)};
  std::optional<DatedPlan> before;
  try {
    if (!options.against.empty()) before = ReadBefore(session, options.against, *project);
  } catch (const RunTimeError& error) {
    return session.TellFailure(options.against, error);
  }
  if (before) drawn.before = &*before;
  std::vector<Picture> chart;
  chart.push_back(DrawChart(*plan, drawn));
  const std::string described = chart.front().description;
  plan.reset();  // so that no more than the picture is in memory while it is written
  before.reset();
  SayIfSmall(session, options.output,
             pictures::WritePictures(std::move(chart), session.kept.NewOutput(options.output)));
  session.Report(ToUtf8(described) + "; written: " + options.output);
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
