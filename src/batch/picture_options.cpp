#include "picture_commands.h"

namespace merivane {
namespace {

void AddOutput(CLI::App* command, std::string& output, bool& force, const char* what) {
  command->add_option("--output", output, what)->required();
  command->add_flag("--force", force, "replace an output that exists");
}

}  // namespace

CLI::App* AddDraw(CLI::App& app, DrawOptions& options) {
  CLI::App* command = app.add_subcommand("draw", "draw the scenarios of a model as diagrams");
  auto* model = command->add_option("MODEL", options.model, "Neutral Text file (.txt)");
  auto* database = command->add_option("--database", options.database,
                                       "database of a translated model (.mdb): what stays out of "
                                       "the plan is grey");
  auto* project =
      command->add_option("--project", options.project, "id or name of the project to draw");
  command->add_option("--scenario", options.scenario, "draw this one alone (default: all)");
  command->add_flag("--objects", options.objects, "list the objects of each unit below it");
  AddOutput(command, options.output, options.force, "picture to write (.svg, .png, .pdf)");
  database->needs(project)->excludes(model);
  project->needs(database);
  command->callback([&options] {
    if (options.model.empty() && options.database.empty()) {
      throw CLI::ValidationError("draw", "MODEL or --database is required");
    }
  });
  return command;
}

}  // namespace merivane
