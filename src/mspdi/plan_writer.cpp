#include "mspdi/plan_writer.h"

#include <cerrno>
#include <fstream>

#include "plan_parts.h"
#include "runtime/code_page.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::mspdi {

namespace {

void TellLosses(const Losses& losses, std::size_t unknownFields,
                std::vector<std::string>& warnings) {
  const auto tell = [&](std::size_t count, const char* one, const char* several) {
    if (count > 0) warnings.push_back(std::to_string(count) + (count == 1 ? one : several));
  };
  tell(losses.baselines, " baseline has a number beyond 10; left out.",
       " baselines have a number beyond 10; left out.");
  tell(losses.periods,
       " row of work spread over time has no beginning or is of no known kind; left out.",
       " rows of work spread over time have no beginning or are of no known kind; left out.");
  tell(losses.rates, " rate is beyond the 25 that a resource may have; left out.",
       " rates are beyond the 25 that a resource may have; left out.");
  tell(losses.notes, " note breaks off in its rich text; what there is of it is written.",
       " notes break off in their rich text; what there is of them is written.");
  tell(unknownFields, " value of a custom field is of a number that no field has; left out.",
       " values of custom fields are of a number that no field has; left out.");
  tell(losses.texts,
       " text is longer than XML takes, or holds characters that can't stand there; the rest is "
       "written.",
       " texts are longer than XML takes, or hold characters that can't stand there; the rest is "
       "written.");
}

void Save(const pugi::xml_document& document, const Output& output) {
  std::ofstream file(PathOf(output.path), std::ios::binary | std::ios::trunc);
  if (!file.is_open()) throw FileError(ErrorOfSystem(errno, kPermissionDenied), output.name);
  document.save(file, " ", pugi::format_indent, pugi::encoding_utf8);
  file.close();
  if (!file.fail()) return;
  if (output.path != output.name) RemoveFile(PathOf(output.path));  // half a plan takes no place
  throw FileError(kDiskFull, output.name);
}

}  // namespace

WrittenCounts WritePlan(Connection& connection, std::int32_t project, const DateTime& today,
                        const Output& output) {
  const ReadScope reading(&connection);
  const Utf8Texts texts;
  schedule::Plan plan = schedule::ReadPlan(connection, project, today);
  schedule::Schedule dates = schedule::MakeSchedule(plan);
  Uids materials = ReadMaterials(connection, project, plan);
  const PlanOnPaper paper{.connection = connection,
                          .project = project,
                          .plan = std::move(plan),
                          .dates = std::move(dates),
                          .fields = CustomFields(connection, project),
                          .timephased = TimephasedData(connection, project),
                          .materials = std::move(materials)};
  WrittenCounts counts{
      .tasks = paper.plan.tasks.size(), .links = paper.plan.links.size(), .warnings = {}};
  for (const std::string& warning : paper.plan.warnings) {
    counts.warnings.push_back(FromUtf8(warning));
  }

  pugi::xml_document document;
  document.append_child(pugi::node_declaration).append_attribute("version").set_value("1.0");
  document.first_child().append_attribute("encoding").set_value("UTF-8");
  pugi::xml_node root = document.append_child("Project");
  root.append_attribute("xmlns").set_value("http://schemas.microsoft.com/project");
  Losses losses;
  Element whole(root, losses);
  WriteHead(paper, whole);
  WriteTasks(paper, whole.Child("Tasks"));
  const Uids resources = WriteResources(paper, whole);
  counts.resources = resources.size();
  counts.assignments = WriteAssignments(paper, resources, whole);
  TellLosses(losses, paper.fields.Unknown(), counts.warnings);
  Save(document, output);
  return counts;
}

}  // namespace merivane::mspdi
