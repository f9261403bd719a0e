#include "options.h"

#include <CLI/CLI.hpp>

#include "batch/batch.h"
#include "pictures/picture_file.h"
#include "runtime/text.h"

namespace merivane::batch {

using namespace pictures;

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

// The name is trimmed as a browse button trims it; an empty one is wrong usage.
CLI::Option* AddName(CLI::App* command, const char* option, std::string& name,
                     const char* description) {
  const CLI::Validator trimmed(
      [](std::string& given) {
        given = Trim(given);
        return std::string(given.empty() ? "the name is empty" : "");
      },
      "");
  return command->add_option(option, name, description)->transform(trimmed);
}

void AddOutput(CLI::App* command, std::string& output, bool& force, const std::string& what) {
  AddName(command, "--output", output, what.c_str())->required();
  command->add_flag("--force", force, "replace an output that exists");
}

std::string PictureToWrite() { return "picture to write (" + PictureEndingWords() + ")"; }

void AddCommonOptions(CLI::App* command, CommandLine& line) {
  command->add_option("--code-page", line.common.codePage,
                      "OEM code page of the system (default: from the locale)");
  command
      ->add_option_function<std::string>(
          "--today", [&line](const std::string& text) { line.common.today = ParseDate(text); },
          "day that counts as today, M/D/YYYY")
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

CLI::App* AddDraw(CLI::App& app, CommandLine& line) {
  DrawOptions& options = line.draw;
  CLI::App* command = app.add_subcommand("draw", "draw the scenarios of a model as diagrams");
  auto* model = AddName(command, "MODEL", options.model, "Neutral Text file (.txt)");
  auto* database = AddName(command, "--database", options.database,
                           "database of a translated model (.mdb): what stays out of "
                           "the plan is grey");
  auto* project =
      command->add_option("--project", options.project, "id or name of the project to draw");
  command->add_option("--scenario", options.scenario, "draw this one alone (default: all)");
  command->add_flag("--objects", options.objects, "list the objects of each unit below it");
  AddOutput(command, options.output, options.force, PictureToWrite());
  AddCommonOptions(command, line);
  database->needs(project)->excludes(model);
  project->needs(database);
  command->callback([&options] {
    if (options.model.empty() && options.database.empty()) {
      throw CLI::ValidationError("draw", "MODEL or --database is required");
    }
  });
  return command;
}

CLI::App* AddChart(CLI::App& app, CommandLine& line) {
  ChartArguments& options = line.chart;
  CLI::App* command = app.add_subcommand("chart", "draw a plan as a chart");
  AddName(command, "DATABASE", options.database, "plan database (.mdb)")->required();
  command->add_option("--project", options.project, "id or name of the project to draw")
      ->required();
  command->add_flag("--columns", options.columns,
                    "list start, finish, days and predecessors beside the names");
  AddName(command, "--against", options.against,
          "the plan as it was, drawn thin below it: planning XML (.xml), or a database with "
          "the project of the same number");
  AddOutput(command, options.output, options.force, PictureToWrite());
  AddCommonOptions(command, line);
  return command;
}

CLI::App* AddReport(CLI::App& app, CommandLine& line) {
  ReportOptions& options = line.report;
  CLI::App* command = app.add_subcommand("report", "tell a model and its plan on one page");
  AddName(command, "MODEL", options.model, "Neutral Text file (.txt)")->required();
  command
      ->add_option("--choose", options.choices,
                   "scenario or decomposition to take where the program asks, in order")
      ->allow_extra_args(false);
  command->add_flag("--objects", options.objects, "list the objects of each unit below it");
  AddOutput(command, options.output, options.force, "page to write (.html)");
  AddCommonOptions(command, line);
  return command;
}

}  // namespace

std::optional<int> ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line,
                                   std::ostream& out, std::ostream& err) {
  CLI::App app("Translates between IDEF3 process models (Neutral Text) and project plans.",
               "merivane-batch");
  app.allow_windows_style_options(false);  // a name may begin with "/" on every system
  app.set_version_flag("--version", std::string("merivane-batch ") + MERIVANE_VERSION);
  app.require_subcommand(1);
  app.footer(kFooter);
  const std::pair<const CLI::App*, Command> commands[] = {
      {AddToProject(app, line), Command::kToProject}, {AddToModel(app, line), Command::kToModel},
      {AddCheck(app, line), Command::kCheck},         {AddExport(app, line), Command::kExport},
      {AddDiff(app, line), Command::kDiff},           {AddProjects(app, line), Command::kProjects},
      {AddDraw(app, line), Command::kDraw},           {AddChart(app, line), Command::kChart},
      {AddReport(app, line), Command::kReport}};
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return app.exit(error, out, err) == 0 ? kDone : kRefused;
  }
  for (const auto& [given, command] : commands) {
    if (*given) line.command = command;
  }
  return std::nullopt;
}

}  // namespace merivane::batch
