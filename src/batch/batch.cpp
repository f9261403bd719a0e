#include "batch/batch.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "guarded.h"
#include "name_options.h"
#include "picture_commands.h"
#include "session.h"

namespace merivane::batch {

namespace {

constexpr const char* kFooter = R"(Examples:
  merivane-batch check model.txt
  merivane-batch check plan.xml --against plan.mdb --project 1
  merivane-batch to-project model.txt --database plan.mdb --xml plan.xml
  merivane-batch to-project model.txt --database plan.mdb --append --choose "Main line"
  merivane-batch to-project --from plan.mdb --project 1 --database next.mdb --xml next.xml
  merivane-batch projects plan.mdb --json
  merivane-batch to-model --database plan.mdb --project 1 --output again.txt
  merivane-batch to-model --xml plan.xml --interim plan.mdb --merge 1 --output merged.txt
  merivane-batch export plan.mdb --project 1 --xml plan.xml
  merivane-batch diff model.txt merged.txt
  merivane-batch draw model.txt --output model.svg
  merivane-batch chart plan.mdb --project 1 --output plan.svg
  merivane-batch report model.txt --output model.html

Exit status: 0 done; 3 done, but messages were shown; 1 failed; 2 wrong usage or a name that is
refused, nothing was touched. For check: 0 nothing found; 3 warnings only; 1 errors.
For diff: 0 the same; 1 different; 2 can't be compared.)";

struct CommandLine {
  CommonOptions common;
  ToProjectOptions toProject;
  ToModelOptions toModel;
  CheckOptions check;
  ExportOptions exported;
  DiffOptions diff;
  ProjectsOptions projects;
  DrawOptions draw;
  ChartArguments chart;
  ReportOptions report;
  std::string todayText;
};

void AddCommonOptions(CLI::App* command, CommandLine& line) {
  command->add_option("--code-page", line.common.codePage,
                      "OEM code page of the system (default: from the locale)");
  command->add_option("--today", line.todayText, "day that counts as today, M/D/YYYY")
      ->check([](const std::string& text) {
        return IsDate(text) ? std::string() : "'" + text + "' is no date (M/D/YYYY)";
      });
  AddName(command, "--template", line.common.templateFile,
          "template database (default: beside the program)");
  AddName(command, "--log", line.common.logFile,
          "write each message box and chooser there, one JSON object a line");
  command->add_flag("--keep-partial", line.common.keepPartial,
                    "leave what a failed run has written so far");
  command->add_flag("--quiet", line.common.quiet, "no message boxes and no closing line");
}

CLI::App* AddToProject(CLI::App& app, CommandLine& line) {
  ToProjectOptions& options = line.toProject;
  CLI::App* command = app.add_subcommand("to-project", "translate a model text into a plan");
  auto* model = AddName(command, "MODEL", options.model, "Neutral Text file (.txt)");
  auto* from = AddName(command, "--from", options.from,
                       "database whose model is planned again, in the place of a text (.mdb)");
  auto* project =
      command->add_option("--project", options.project, "id or name of the project in --from");
  from->needs(project)->excludes(model);
  project->needs(from);
  AddName(command, "--database", options.database,
          "database to write (.mdb); with --mpx or --xml the interim database")
      ->required();
  auto* overwrite = command->add_flag("--overwrite", options.overwrite,
                                      "replace the database; the old one is kept as .bak");
  command->add_flag("--append", options.append, "add a project to the database")
      ->excludes(overwrite);
  AddName(command, "--mpx", options.mpx, "MPX file to write as well (.mpx)");
  AddName(command, "--xml", options.xml, "planning XML to write as well (.xml)");
  command->add_flag("--force", options.force, "replace an MPX or XML file that exists");
  command
      ->add_option("--choose", options.choices,
                   "scenario or decomposition to take where the program asks, in order")
      ->allow_extra_args(false);
  command
      ->add_flag("--own-text", options.ownText,
                 "take a text that Merivane wrote, too: it is in the form that Celvar imports")
      ->excludes(from);
  AddCommonOptions(command, line);
  command->callback([&options] {
    if (options.model.empty() && options.from.empty()) {
      throw CLI::RequiredError("MODEL or --from");
    }
  });
  return command;
}

void CheckSource(const ToModelOptions& options) {
  const bool file = !options.mpx.empty() || !options.xml.empty();
  if (options.database.empty() && !file) {
    throw CLI::ValidationError("to-model", "--database, --mpx or --xml is required");
  }
  if (file && !options.overwrite && options.merge.empty()) {
    throw CLI::ValidationError("to-model", std::string(options.mpx.empty() ? "--xml" : "--mpx") +
                                               " needs --overwrite or --merge");
  }
  if (options.output.empty() && !options.dryRun) {
    throw CLI::ValidationError("to-model", "--output is required");
  }
}

CLI::App* AddToModel(CLI::App& app, CommandLine& line) {
  ToModelOptions& options = line.toModel;
  CLI::App* command = app.add_subcommand("to-model", "translate a plan into a model text");
  auto* database = AddName(command, "--database", options.database, "plan database (.mdb)");
  auto* project =
      command->add_option("--project", options.project, "id or name of the project to translate");
  auto* mpx = AddName(command, "--mpx", options.mpx, "plan as MPX file (.mpx)");
  auto* xml = AddName(command, "--xml", options.xml, "plan as planning XML (.xml)");
  auto* interim = AddName(command, "--interim", options.interim, "interim database (.mdb)");
  auto* overwrite =
      command->add_flag("--overwrite", options.overwrite, "build a new model from the plan alone");
  auto* merge = command->add_option("--merge", options.merge,
                                    "id or name of the project to fold the plan into");
  auto* complete = command->add_flag("--complete", options.complete,
                                     "with --merge: keep everything that the plan holds");
  auto* noBackup = command->add_flag("--no-backup", options.noBackup,
                                     "keep no copy of the interim database before a merge");
  auto* noProof = command->add_flag("--no-proof", options.noProof,
                                    "don't translate the merged text and hold it against the plan");
  auto* dryRun = command->add_flag("--dry-run", options.dryRun,
                                   "merge in a copy and tell what would change; writes nothing");
  command->add_flag("--json", options.json, "with --dry-run: as a JSON object")->needs(dryRun);
  AddName(command, "--output", options.output, "Neutral Text file to write (.txt)");
  command->add_flag("--force", options.force, "replace an output that exists");
  database->needs(project)->excludes(mpx)->excludes(xml);
  project->needs(database);
  mpx->needs(interim)->excludes(xml);
  xml->needs(interim);
  for (auto* option : {interim, overwrite, merge}) option->excludes(database);
  overwrite->excludes(merge);
  for (auto* option : {complete, noBackup, noProof, dryRun}) option->needs(merge);
  AddCommonOptions(command, line);
  command->callback([&options] { CheckSource(options); });
  return command;
}

CLI::App* AddExport(CLI::App& app, CommandLine& line) {
  ExportOptions& options = line.exported;
  CLI::App* command =
      app.add_subcommand("export", "write a plan as planning XML, as an MPX file or as a table");
  AddName(command, "DATABASE", options.database, "plan database (.mdb)")->required();
  command->add_option("--project", options.project, "id or name of the project to write")
      ->required();
  AddName(command, "--xml", options.xml, "planning XML to write (.xml)");
  AddName(command, "--mpx", options.mpx, "MPX file to write (.mpx)");
  auto* csv = AddName(command, "--csv", options.csv, "table for a spreadsheet to write (.csv)");
  command->add_option("--table", options.table, "tasks, resources or assignments (default: tasks)")
      ->check(CLI::IsMember({"tasks", "resources", "assignments"}))
      ->needs(csv);
  command->add_flag("--force", options.force, "replace an output that exists");
  AddCommonOptions(command, line);
  command->callback([&options] {
    if (options.xml.empty() && options.mpx.empty() && options.csv.empty()) {
      throw CLI::RequiredError("--xml, --mpx or --csv");
    }
  });
  return command;
}

CLI::App* AddCheck(CLI::App& app, CommandLine& line) {
  CLI::App* command =
      app.add_subcommand("check",
                         "list what a translation of a model text, or a merge of a plan, "
                         "would stumble over, or what of a database is damaged");
  AddName(command, "MODEL", line.check.model,
          "Neutral Text file (.txt) or database (.mdb); with --against a plan (.mpx, .xml)")
      ->required();
  auto* against = AddName(command, "--against", line.check.against,
                          "database that holds the model of the plan (.mdb)");
  auto* project = command->add_option("--project", line.check.project,
                                      "id or name of the project to merge the plan into");
  against->needs(project);
  project->needs(against);
  command->add_flag("--json", line.check.json, "as a JSON object");
  command->add_flag("--all", line.check.all, "every note, and not one of each kind with a count");
  AddName(command, "--template", line.common.templateFile,
          "template database (default: beside the program)");
  return command;
}

CLI::App* AddDiff(CLI::App& app, CommandLine& line) {
  DiffOptions& options = line.diff;
  CLI::App* command = app.add_subcommand(
      "diff", "tell what differs between two models, or two plans, of any kind of file");
  AddName(command, "FIRST", options.first, "model text (.txt) or plan (.mdb, .mpx, .xml)")
      ->required();
  AddName(command, "SECOND", options.second, "the one to hold against it")->required();
  command
      ->add_option("--project", options.projects,
                   "id or name of the project of a database; of two databases for each, in order")
      ->allow_extra_args(false)
      ->expected(1, 2);
  command->add_flag("--json", options.json, "as a JSON object");
  AddName(command, "--template", line.common.templateFile,
          "template database (default: beside the program)");
  return command;
}

CLI::App* AddProjects(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("projects", "list the projects of a database");
  AddName(command, "DATABASE", line.projects.database, "plan database (.mdb)")->required();
  command->add_flag("--json", line.projects.json, "as a JSON array");
  return command;
}

int RunCommandLine(const std::vector<std::string>& arguments, const std::string& programFolder,
                   std::ostream& out, std::ostream& err, const RunSetting& setting) {
  CommandLine line;
  CLI::App app("Translates between IDEF3 process models (Neutral Text) and project plans.",
               "merivane-batch");
  app.allow_windows_style_options(false);  // a name may begin with "/" on every system
  app.set_version_flag("--version", std::string("merivane-batch ") + MERIVANE_VERSION);
  app.require_subcommand(1);
  app.footer(kFooter);
  const CLI::App* toProject = AddToProject(app, line);
  const CLI::App* toModel = AddToModel(app, line);
  const CLI::App* check = AddCheck(app, line);
  const CLI::App* exported = AddExport(app, line);
  const CLI::App* diff = AddDiff(app, line);
  AddProjects(app, line);
  CLI::App* draw = AddDraw(app, line.draw);
  CLI::App* chart = AddChart(app, line.chart);
  CLI::App* report = AddReport(app, line.report);
  for (CLI::App* command : {draw, chart, report}) AddCommonOptions(command, line);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return app.exit(error, out, err) == 0 ? kDone : kRefused;
  }
  if (!line.todayText.empty()) line.common.today = ParseDate(line.todayText);

  Session session(line.common, programFolder, out, err, setting);
  return session.Run([&]() -> int {
    if (*toProject) return RunToProject(session, line.toProject);
    if (*toModel) return RunToModel(session, line.toModel);
    if (*check) return RunCheck(session, line.check);
    if (*diff) return RunDiff(session, line.diff);
    if (*exported) return RunExport(session, line.exported);
    if (*draw) return RunDraw(session, line.draw);
    if (*chart) return RunChart(session, line.chart);
    if (*report) return RunReport(session, line.report);
    return RunProjects(session, line.projects);
  });
}

}  // namespace

int RunBatch(const std::vector<std::string>& arguments, const std::string& programFolder,
             std::ostream& out, std::ostream& err, const RunSetting& setting) {
  return Guarded(err, [&] { return RunCommandLine(arguments, programFolder, out, err, setting); });
}

}  // namespace merivane::batch
