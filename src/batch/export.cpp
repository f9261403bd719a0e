#include <string_view>
#include <utility>

#include "mspdi/plan_reader.h"
#include "mspdi/plan_writer.h"
#include "pictures/picture_file.h"
#include "plan_table.h"
#include "project_lookup.h"
#include "roundtrip/plan_as_mpx.h"
#include "runtime/file_names.h"
#include "runtime/new_file.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "session.h"
#include "shell/named_files.h"

namespace merivane::batch {

using namespace mspdi;

namespace {

struct Target {
  const char* option;
  std::string path;
  const char* ending;
  const char* kind;
};

std::vector<Target> TargetsOf(const ExportOptions& options) {
  std::vector<Target> targets = {{"--xml", options.xml, "xml", "planning XML"},
                                 {"--mpx", options.mpx, "mpx", "an MPX file"},
                                 {"--csv", options.csv, "csv", "a table"}};
  std::erase_if(targets, [](const Target& target) { return target.path.empty(); });
  return targets;
}

// What can't be written, in one message.
void TellLeftOut(Session& session, const char* title, const std::string& warnings) {
  if (warnings.empty()) return;
  session.desktop.ShowMessage(
      {.text = "Not everything of the plan can be as the database has it:\n" + warnings,
       .icon = MessageIcon::kExclamation,
       .title = title});
}

std::string JoinedLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

std::string WriteMpx(Session& session, const ExportOptions& options, const FilePlan& plan,
                     std::vector<std::string> warnings) {
  const roundtrip::MpxText mpx = roundtrip::PlanAsMpx(plan, session.desktop.OemCodePage());
  UntakenRows untaken;
  for (const Untaken kind :
       {Untaken::kInactiveTasks, Untaken::kManualTasks, Untaken::kMaterialResources,
        Untaken::kCostResources, Untaken::kSubprojects, Untaken::kOuterLinks, Untaken::kConstraints,
        Untaken::kProgress}) {
    for (const std::int64_t row : plan.untaken.Of(kind)) untaken.Add(kind, row);
  }
  if (!untaken.Text().empty()) warnings.push_back(untaken.Text());
  const auto counted = [&warnings](std::size_t count, const char* one, const char* several) {
    if (count > 0) warnings.push_back(Counted(count, one, several));
  };
  counted(plan.lostCharacters, "character that Windows-1252 lacks became '?'.",
          "characters that Windows-1252 lacks became '?'.");
  counted(mpx.changedTexts, "text held quotes or line ends that MPX can't hold.",
          "texts held quotes or line ends that MPX can't hold.");
  WriteOutput(session.kept.NewOutput(options.mpx), mpx.text);
  TellLeftOut(session, "MPX file", JoinedLines(warnings));
  return std::to_string(plan.tasks.size()) + " tasks, " + std::to_string(plan.resources.size()) +
         " resources, " + std::to_string(plan.assignments.size()) +
         " assignments; written: " + options.mpx;
}

// By way of the planning XML, whose reader gives each task what an MPX file has of it.
std::string ExportMpx(Session& session, const ExportOptions& options, Connection& connection,
                      std::int32_t project) {
  const TemporaryFile file(TemporaryName());
  const Output xml("the plan as planning XML", file.Path());
  WrittenCounts counts = WritePlan(connection, project, session.desktop.Today(), xml);
  return WriteMpx(session, options, ReadPlanFile(xml), std::move(counts.warnings));
}

std::string ExportXml(Session& session, const ExportOptions& options, Connection& connection,
                      std::int32_t project) {
  const WrittenCounts counts =
      WritePlan(connection, project, session.desktop.Today(), session.kept.NewOutput(options.xml));
  TellLeftOut(session, "Planning XML", JoinedLines(counts.warnings));
  return std::to_string(counts.tasks) + " tasks, " + std::to_string(counts.resources) +
         " resources, " + std::to_string(counts.links) + " links, " +
         std::to_string(counts.assignments) + " assignments; written: " + options.xml;
}

std::string ExportCsv(Session& session, const ExportOptions& options, Connection& connection,
                      std::int32_t project) {
  const PlanTable table = options.table == "resources"     ? PlanTable::kResources
                          : options.table == "assignments" ? PlanTable::kAssignments
                                                           : PlanTable::kTasks;
  const TableText text = PlanAsTable(connection, project, session.desktop.Today(), table);
  WriteOutput(session.kept.NewOutput(options.csv), text.text);
  return std::to_string(text.rows) + " " + options.table + "; written: " + options.csv;
}

int Export(Session& session, const ExportOptions& options) {
  std::string reason;
  const auto project = FindProject(ListProjects(session.program.workspace, options.database),
                                   options.project, reason);
  if (!project) return session.Refuse(reason);
  Connection connection(session.program.workspace, options.database, OpenMode::kReadOnly);
  std::string report;
  const auto add = [&](const std::string& path, auto write) {
    if (path.empty()) return;
    report += (report.empty() ? "" : "; ") + write(session, options, connection, *project);
  };
  add(options.xml, ExportXml);
  add(options.mpx, ExportMpx);
  add(options.csv, ExportCsv);
  session.Report(report + session.Notes());
  return session.StatusOf(true);
}

}  // namespace

int RunExport(Session& session, const ExportOptions& options) {
  const std::vector<Target> targets = TargetsOf(options);
  std::vector<NamedFile> files = {{"the database", options.database}};
  for (const Target& target : targets) {
    if (!HasExtension(target.path, target.ending)) {
      return session.Refuse(target.path + " is no name of " + target.kind + ": ." + target.ending +
                            ".");
    }
    files.push_back(OutputNamed(target.option, target.path, options.force));
  }
  if (!session.Admits(std::move(files))) return kRefused;
  try {
    return Export(session, options);
  } catch (const RunTimeError& error) {
    return session.TellFailure(options.database, error);
  }
}

}  // namespace merivane::batch
