#include <nlohmann/json.hpp>

#include "printable.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "session.h"

namespace merivane::batch {

namespace {

void PrintJson(std::ostream& out, const std::vector<ProjectRow>& projects) {
  using Json = nlohmann::ordered_json;
  Json list = Json::array();
  for (const ProjectRow& project : projects) {
    list.push_back({{"id", project.id ? Json(*project.id) : Json(nullptr)},
                    {"name", ToUtf8(project.name)},
                    {"tasks", project.tasks}});
  }
  out << PrintableJsonLine(list) << '\n';
}

}  // namespace

int RunProjects(Session& session, const ProjectsOptions& options) try {
  const std::vector<ProjectRow> projects =
      ListProjects(session.program.workspace, options.database);
  if (options.json) {
    PrintJson(session.out, projects);
    return kDone;
  }
  for (const ProjectRow& project : projects) {
    session.out << (project.id ? std::to_string(*project.id) : "-") << '\t'
                << PrintableLine(ToUtf8(project.name)) << '\t' << project.tasks << " tasks\n";
  }
  return kDone;
} catch (const RunTimeError& error) {
  return session.Refuse(options.database + ": " + Session::ReasonOf(options.database, error));
}

}  // namespace merivane::batch
