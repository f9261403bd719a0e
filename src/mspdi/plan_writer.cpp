#include "mspdi/plan_writer.h"

#include <cerrno>
#include <fstream>

#include "plan_parts.h"
#include "runtime/code_page.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::mspdi {

namespace {

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
  std::size_t cut = 0;
  Element whole(root, cut);
  WriteHead(paper, whole);
  WriteTasks(paper, whole.Child("Tasks"), counts);
  const Uids resources = WriteResources(paper, whole, counts);
  WriteAssignments(paper, resources, whole, counts);
  if (const std::size_t unknown = paper.fields.Unknown(); unknown > 0) {
    counts.warnings.push_back(
        std::to_string(unknown) +
        (unknown == 1 ? " value of a custom field is" : " values of custom fields are") +
        " of a number that no field has; left out.");
  }
  if (cut > 0) {
    counts.warnings.push_back(std::to_string(cut) +
                              (cut == 1 ? " text is longer than XML takes, or holds"
                                        : " texts are longer than XML takes, or hold") +
                              " characters that can't stand there; the rest is written.");
  }
  Save(document, output);
  return counts;
}

}  // namespace merivane::mspdi
