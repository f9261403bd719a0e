#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "brought_back.h"
#include "neutraltext/modGlobal.h"
#include "runtime/conversions.h"
#include "runtime/text.h"
#include "store/ask.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::translator {

using namespace neutraltext;

namespace {

constexpr const char* kProjectColumn = "Msp_ProjID";

// A table of the model, and its columns that a translation fills.
struct ModelTable {
  const char* name;
  std::vector<std::string_view> marks;
};

std::vector<ModelTable> ModelTables() {
  return {{"Activity_Pool", {}},
          {"Object_Pool", {"Send_to_Project", "PID", "brought_back"}},
          {"Fact_Pool", {}},
          {"Misc", {}},
          {"Scenario", {"Project_Order", "Send_to_Project"}},
          {"Activity_in_Scenario",
           {"Send_to_Project", "Project_ID", "p_order", "outline", "Processed", "SSRels", "FFRels",
            "Brought_back"}},
          {"Object_in_Activity_in_Scenario", {"Send_to_Project", "PID", "Brought_from_Project"}},
          {"Junctions_in_Scenario", {"Processed"}},
          {"Facts_in_Junction", {}},
          {"Links_in_Scenario", {"Processed"}},
          {"OSTN_List", {}}};
}

Recordset ProjectOf(Connection& source, const StoredModel& model) {
  return AskStatic(&source,
                   "select * from MSP_PROJECTS where PROJ_ID = ", std::to_string(model.project));
}

// The columns that both have, without the marks and the project's number.
std::vector<std::string> ColumnsToCopy(Recordset& from, Recordset& to, const ModelTable& table) {
  std::vector<std::string> columns;
  for (int index = 0; index < from.FieldCount(); ++index) {
    const std::string column = from.FieldName(index);
    const bool isLeft =
        EqualNoCase(column, kProjectColumn) ||
        std::any_of(table.marks.begin(), table.marks.end(),
                    [&](std::string_view mark) { return EqualNoCase(column, mark); });
    if (!isLeft && to.FindField(column) >= 0) columns.push_back(column);
  }
  return columns;
}

void CopyRows(ModelToProject& state, Connection& source, const StoredModel& model,
              const ModelTable& table) {
  if (TableExists(&source, table.name) == 0) return;  // of an earlier version
  Recordset from = AskStatic(&source, "select * from ", table.name, " where ", kProjectColumn,
                             " = ", std::to_string(model.project));
  Recordset to = Ask(state.gMspConn.get(), "select * from ", table.name);
  std::vector<std::string> names = ColumnsToCopy(from, to, table);
  std::vector<std::size_t> places;
  places.reserve(names.size());
  for (const std::string& name : names) {
    places.push_back(static_cast<std::size_t>(from.FindField(name)));
  }
  names.emplace_back(kProjectColumn);
  std::vector<Value> row;
  for (; !from.Eof(); from.MoveNext(), state.progress.Step()) {
    from.ReadRow(row);
    std::vector<Value> values;
    values.reserve(names.size());
    for (const std::size_t place : places) values.push_back(std::move(row[place]));
    values.emplace_back(state.gMspProjId);
    to.AddNew(names, std::move(values));
  }
}

// A merge and a rebuilt model settle the greatest numbers, and nothing else does.
bool WasBroughtBack(Recordset& project) {
  return !project.Eof() && !project.Field("KV7_PROJ_MAX_USE_ID").IsNull();
}

// What the reader tells of a project.
void CopyProject(ModelToProject& state, Recordset& from) {
  if (from.Eof()) return;
  Recordset projects = Ask(state.gMspConn.get(), "select * from MSP_PROJECTS");
  const std::string name = NameApartFromOthers(state, projects, Joined(from.Field("PROJ_NAME")));
  projects.AddNew();
  projects.SetField("PROJ_ID", state.gMspProjId);
  projects.SetField("PROJ_NAME", name);
  projects.SetField("PROJ_DATA_SOURCE", state.gDatabaseName);
  for (const char* column :
       {"PROJ_PROP_AUTHOR", "PROJ_PROP_COMPANY", "PROJ_PROP_SUBJECT", "PROJ_CREATION_DATE",
        "PROJ_LAST_SAVED", "KV7_PROJ_PROPERTY_LIST", "PROJ_OPT_DEF_START_TIME",
        "PROJ_OPT_DEF_FIX_COST_ACCRUAL", "PROJ_OPT_DEF_OVT_RATE", "PROJ_OPT_DEF_STD_RATE"}) {
    projects.SetField(column, from.Field(column));
  }
  projects.Update();
}

}  // namespace

bool HoldsModel(Workspace& workspace, const StoredModel& model) {
  Connection source(workspace, model.database, OpenMode::kReadOnly);
  if (TableExists(&source, "Scenario") == 0) return false;
  return !AskStatic(&source, "select Num from Scenario where ", kProjectColumn, " = ",
                    std::to_string(model.project))
              .Eof();
}

void TakeStoredModel(ModelToProject& state, const StoredModel& model) {
  Connection source(state.workspace, model.database, OpenMode::kReadOnly);
  const ReadScope reading(&source);
  state.progress.Begin("Reading the model", 0);
  Recordset project = ProjectOf(source, model);
  CopyProject(state, project);
  for (const ModelTable& table : ModelTables()) CopyRows(state, source, model, table);
  if (WasBroughtBack(project)) BroughtBack(state, source, model.project).TakeOver();
}

void TakeStartDate(ModelToProject& state, const StoredModel& model) {
  Connection source(state.workspace, model.database, OpenMode::kReadOnly);
  Recordset from = ProjectOf(source, model);
  if (from.Eof() || from.Field("KV7_PROJ_START_DATE").IsNull()) return;
  Recordset to =
      Ask(state.gMspConn.get(), "select * from MSP_PROJECTS where PROJ_ID = ", state.gMspProjId);
  to.SetField("KV7_PROJ_START_DATE", from.Field("KV7_PROJ_START_DATE"));
  to.Update();
}

}  // namespace merivane::translator
