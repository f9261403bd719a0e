#include "merge_statements.h"

#include <utility>

#include "program/error_boxes.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

constexpr std::string_view kProjectRow = "Select * from MSP_PROJECTS Where Proj_ID = ";

constexpr std::string_view kLinksOfScenario =
    "Select * from Links_in_Scenario Where Scenario_Num = ";
constexpr std::string_view kJunctionsOfScenario =
    "Select * from Junctions_in_Scenario Where Scenario_Num = ";

void SetProject(const ProjectToModel& state, Recordset& row) {
  row.SetField("Msp_ProjID", std::int64_t{state.gInterimProjId});
}

}  // namespace

std::string WhereMspProjId(const ProjectToModel& state) {
  return " where Msp_ProjID = " + std::to_string(state.gInterimProjId);
}

std::string AndMspProjId(const ProjectToModel& state) {
  return " and Msp_ProjID = " + std::to_string(state.gInterimProjId);
}

std::string AndProjId(const ProjectToModel& state) {
  return " and Proj_ID = " + std::to_string(state.gInterimProjId);
}

std::string LinksWhere(const ProjectToModel& state, std::string_view piece, const Value& number) {
  return SqlOf(kLinksOfScenario, state.gCurrentScenario, piece, number, AndMspProjId(state));
}

std::string JunctionsWhere(const ProjectToModel& state, std::string_view piece,
                           const Value& number) {
  return SqlOf(kJunctionsOfScenario, state.gCurrentScenario, piece, number, AndMspProjId(state));
}

std::optional<std::int16_t> OccurrenceOfPlanTask(ProjectToModel& state, std::int16_t pid) {
  Recordset task = Ask(state.gInterimConn.get(), "Select * from ProjectAct Where PID = ", pid,
                       AndMspProjId(state));
  if (task.Eof()) return std::nullopt;
  const Value occurrence = task.Field("Text1");
  return IsNumeric(occurrence) ? std::optional(ToInt16(occurrence)) : std::nullopt;
}

bool IsJunction(ProjectToModel& state, std::int16_t number) {
  Recordset junctions = Ask(state.gInterimConn.get(), JunctionsWhere(state, " AND Num = ", number));
  return HasRow(junctions);
}

std::string_view EndType(ProjectToModel& state, std::int16_t number) {
  return IsJunction(state, number) ? kJunction : kProcessOccurrence;
}

bool HasRow(Recordset& rows) { return !rows.Eof() && !rows.Bof(); }

bool TextIs(const Value& value, std::string_view text) { return Joined(value) == text; }

GreatestNumbers& NumbersOf(ProjectToModel& state) {
  if (!state.greatestNumbers) {
    Recordset project = Ask(state.gInterimConn.get(), kProjectRow, state.gInterimProjId);
    state.greatestNumbers = {ToInt16(project.Field("KV7_PROJ_Max_Use_Id")),
                             ToInt16(project.Field("KV7_PROJ_Max_Act_Id"))};
  }
  return *state.greatestNumbers;
}

void StoreNumbers(ProjectToModel& state) {
  const auto greatest = std::exchange(state.greatestNumbers, std::nullopt);
  if (!greatest) return;
  Recordset project = Ask(state.gInterimConn.get(), kProjectRow, state.gInterimProjId);
  project.SetField("KV7_PROJ_Max_Use_Id", greatest->use);
  project.SetField("KV7_PROJ_Max_Act_Id", greatest->activity);
  project.Update();
}

NumberCounter::NumberCounter(ProjectToModel& state)
    : greatest_(NumbersOf(state).use), last_(greatest_) {}

std::int16_t NumberCounter::Next() {
  last_ = AddInt16(last_, 1);
  return last_;
}

std::int16_t AddJunction(const ProjectToModel& state, NumberCounter& numbers,
                         std::string_view cardinality, std::string_view type) {
  const std::int16_t number = numbers.Next();
  Recordset junctions = Ask(state.gInterimConn.get(), JunctionsWhere(state, "", ""));
  junctions.AddNew();
  junctions.SetField("Scenario_Num", state.gCurrentScenario);
  junctions.SetField("Num", number);
  junctions.SetField("Cardinality", cardinality);
  junctions.SetField("Type", type);
  SetProject(state, junctions);
  junctions.Update();
  return number;
}

void AddLink(const ProjectToModel& state, NumberCounter& numbers, const NewLink& link) {
  const std::int16_t number = numbers.Next();
  Recordset links = Ask(state.gInterimConn.get(), LinksWhere(state, "", ""));
  links.AddNew();
  links.SetField("Scenario_Num", state.gCurrentScenario);
  links.SetField("Num", number);
  links.SetField("Origin_Num", link.origin);
  links.SetField("Destination_Num", link.destination);
  links.SetField(link.originTypeColumn, link.originType);
  links.SetField(link.destinationTypeColumn, link.destinationType);
  if (!link.type.empty()) {
    links.SetField("Type", link.type);
  }
  SetProject(state, links);
  links.Update();
}

void AddLinkBetween(ProjectToModel& state, NumberCounter& numbers, std::int16_t origin,
                    std::int16_t destination) {
  AddLink(state, numbers,
          {.origin = origin,
           .destination = destination,
           .originType = EndType(state, origin),
           .destinationType = EndType(state, destination)});
}

void RepointOrigin(Recordset& link, std::int16_t junction) {
  link.SetField("Origin_Num", junction);
  link.SetField("Origin_Type", kJunction);
  link.SetField("Origin_Name", "");
  link.Update();
}

void RepointDestination(Recordset& link, std::int16_t junction) {
  link.SetField("Destination_Num", junction);
  link.SetField("Destination_Type", kJunction);
  link.SetField("Destination_Name", "");
  link.Update();
}

void EndOnBrokenModel(ProjectToModel& state, const std::string& title) {
  state.desktop.ShowMessage(
      {.text = "Error in Translation", .icon = MessageIcon::kCritical, .title = title});
  RestoreMousePointer(state.desktop);
  state.desktop.EndProgram();
}

}  // namespace merivane::roundtrip
