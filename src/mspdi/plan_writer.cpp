#include "mspdi/plan_writer.h"

#include "plan_parts.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::mspdi {

namespace {

void TellLosses(const Losses& losses, std::size_t unknownFields,
                std::vector<std::string>& warnings) {
  const auto tell = [&](std::size_t count, const char* one, const char* several) {
    if (count > 0) warnings.push_back(Counted(count, one, several));
  };
  tell(losses.baselines, "baseline has a number beyond 10; left out.",
       "baselines have a number beyond 10; left out.");
  tell(losses.periods,
       "row of work spread over time has no beginning or is of no known kind; left out.",
       "rows of work spread over time have no beginning or are of no known kind; left out.");
  tell(losses.rates, "rate is beyond the 25 that a resource may have; left out.",
       "rates are beyond the 25 that a resource may have; left out.");
  tell(losses.notes, "note breaks off in its rich text; what there is of it is written.",
       "notes break off in their rich text; what there is of them is written.");
  tell(unknownFields, "value of a custom field is of a number that no field has; left out.",
       "values of custom fields are of a number that no field has; left out.");
  tell(losses.texts,
       "text is longer than XML takes, or holds characters that can't stand there; the rest is "
       "written.",
       "texts are longer than XML takes, or hold characters that can't stand there; the rest is "
       "written.");
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

  WrittenXml file(output);
  {
    Element whole(file, "Project", " xmlns=\"http://schemas.microsoft.com/project\"");
    WriteHead(paper, whole);
    WriteTasks(paper, whole);
    const Uids resources = WriteResources(paper, whole);
    counts.resources = resources.size();
    counts.assignments = WriteAssignments(paper, resources, whole);
  }
  TellLosses(file.losses, paper.fields.Unknown(), counts.warnings);
  file.Close();
  return counts;
}

}  // namespace merivane::mspdi
