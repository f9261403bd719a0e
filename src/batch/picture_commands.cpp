#include "picture_commands.h"

#include "name_options.h"
#include "pictures/chart.h"
#include "pictures/picture_file.h"
#include "runtime/code_page.h"

namespace merivane::batch {

using namespace pictures;

namespace {

void AddOutput(CLI::App* command, std::string& output, bool& force, const std::string& what) {
  AddName(command, "--output", output, what.c_str())->required();
  command->add_flag("--force", force, "replace an output that exists");
}

std::string PictureToWrite() { return "picture to write (" + PictureEndingWords() + ")"; }

}  // namespace

CLI::App* AddDraw(CLI::App& app, DrawOptions& options) {
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
  database->needs(project)->excludes(model);
  project->needs(database);
  command->callback([&options] {
    if (options.model.empty() && options.database.empty()) {
      throw CLI::ValidationError("draw", "MODEL or --database is required");
    }
  });
  return command;
}

CLI::App* AddChart(CLI::App& app, ChartArguments& options) {
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
  return command;
}

CLI::App* AddReport(CLI::App& app, ReportOptions& options) {
  CLI::App* command = app.add_subcommand("report", "tell a model and its plan on one page");
  AddName(command, "MODEL", options.model, "Neutral Text file (.txt)")->required();
  command
      ->add_option("--choose", options.choices,
                   "scenario or decomposition to take where the program asks, in order")
      ->allow_extra_args(false);
  command->add_flag("--objects", options.objects, "list the objects of each unit below it");
  AddOutput(command, options.output, options.force, "page to write (.html)");
  return command;
}

bool PictureIsRefused(Session& session, std::vector<NamedFile> files, const std::string& output,
                      bool force) {
  if (!pictures::IsPictureName(output)) {
    session.Say(output + " is no name of a picture: " + PictureEndingWords() + ".");
    return true;
  }
  files.push_back({"--output", output, true, force ? "" : "--force to replace it"});
  return !session.Admits(std::move(files));
}

std::string FootOf(const Session& session, const std::string& source) {
  return FromUtf8(source.substr(source.find_last_of("/\\") + 1)) + ", " +
         DateText(session.desktop.Today()) + ", Merivane " MERIVANE_VERSION;
}

void SayIfSmall(const Session& session, const std::string& output, double factor) {
  constexpr double kReadable = 0.5;
  if (factor >= kReadable) return;
  session.Say(output + " is drawn small, for its size has limits: SVG has none.");
}

}  // namespace merivane::batch
