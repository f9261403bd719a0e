#include "brought_back.h"

#include <set>
#include <utility>

#include "program/model_words.h"
#include "runtime/conversions.h"
#include "store/ask.h"

namespace merivane::translator {

namespace {

bool IsNumber(const Value& value) { return !value.IsNull() && ToDouble(value) > 0; }

// Null stays as it is.
void SetUnlessNull(Recordset& to, const char* column, const Value& value) {
  if (!value.IsNull()) to.SetField(column, value);
}

}  // namespace

void BroughtBack::TakeOver() {
  TakeUnits();
  NameProcesses();
  TakeResources();
  DropResources();
  NumberJunctions();
  SettleLinks();
  SettleScenarios();
}

Recordset BroughtBack::Rows(const char* table) const {
  return Ask(state_.gMspConn.get(), "select * from ", table,
             " where Msp_ProjID = ", state_.gMspProjId);
}

Recordset BroughtBack::Row(const char* table, const char* numberColumn, const Value& number) const {
  return Ask(state_.gMspConn.get(), "select * from ", table,
             " where Msp_ProjID = ", state_.gMspProjId, " and ", numberColumn, " = ", number);
}

void BroughtBack::TakeUnits() {
  Recordset tasks =
      AskStatic(&source_, "select * from MSP_TASKS where TASK_UID > 0 and PROJ_ID = ", project_);
  for (; !tasks.Eof(); tasks.MoveNext()) {
    if (IsNumber(tasks.Field("KV7_PROCOCC_HEX")) && IsNumber(tasks.Field("KV7_SCENARIO_HEX"))) {
      TakeUnit(tasks);
    }
  }
  Recordset units = Rows("Activity_in_Scenario");
  for (; !units.Eof(); units.MoveNext()) {
    const Value number = units.Field("Use_Num");
    if (IsNumber(number)) units_[ToInt32(number)] = Joined(units.Field("Name"));
  }
}

void BroughtBack::TakeUnit(Recordset& task) {
  Recordset unit = Row("Activity_in_Scenario", "Use_Num", task.Field("KV7_PROCOCC_HEX"));
  if (unit.Eof()) {
    unit.AddNew();
    unit.SetField("Msp_ProjID", state_.gMspProjId);
    unit.SetField("Use_Num", task.Field("KV7_PROCOCC_HEX"));
    unit.SetField("Scenario_Num", task.Field("KV7_SCENARIO_HEX"));
    unit.SetField("Process_Num", task.Field("KV7_PROC_HEX"));
    unit.SetField("ID", task.Field("TASK_UID"));
  }
  unit.SetField("Name", task.Field("TASK_NAME"));
  SetUnlessNull(unit, "Duration", task.Field("KV7_PROCOCC_DURATION"));
  unit.Update();
}

// The translator finds the process of a unit by its name, which a merge changes for one unit and
// its process alone.
void BroughtBack::NameProcesses() {
  std::set<std::string> names;
  for (Recordset pool = Rows("Activity_Pool"); !pool.Eof(); pool.MoveNext()) {
    names.insert(Joined(pool.Field("Name")));
  }
  for (Recordset units = Rows("Activity_in_Scenario"); !units.Eof(); units.MoveNext()) {
    const Value name = units.Field("Name");
    if (!names.insert(Joined(name)).second || !IsNumber(units.Field("Process_Num"))) continue;
    Recordset process = Row("Activity_Pool", "Num", units.Field("Process_Num"));
    if (process.Eof()) continue;
    Recordset pool = Rows("Activity_Pool");
    pool.AddNew();
    for (int column = 0; column < process.FieldCount(); ++column) {
      pool.SetField(process.FieldName(column), process.Field(column));
    }
    pool.SetField("Name", name);
    pool.Update();
  }
}

void BroughtBack::TakeResources() {
  Recordset resources =
      AskStatic(&source_, "select * from MSP_RESOURCES where RES_UID > 0 and PROJ_ID = ", project_);
  for (; !resources.Eof(); resources.MoveNext()) {
    if (!IsNumber(resources.Field("KV7_OBJ_HEX"))) continue;
    Recordset object = Row("Object_Pool", "Num", resources.Field("KV7_OBJ_HEX"));
    if (object.Eof()) {
      object.AddNew();
      object.SetField("Msp_ProjID", state_.gMspProjId);
      object.SetField("Num", resources.Field("KV7_OBJ_HEX"));
      object.SetField("Name", resources.Field("RES_NAME"));
      object.SetField("Alias", "R" + Joined(resources.Field("KV7_OBJ_HEX")));
      object.SetField("Celvar_Type", resources.Field("KV7_OBJ_Celvar_Type"));
      object.SetField("Dunmar_Type", resources.Field("KV7_OBJ_Dunmar_Type"));
    }
    SetUnlessNull(object, "Quantity", resources.Field("KV7_OBJ_QUANTITY"));
    SetUnlessNull(object, "Glossary", resources.Field("KV7_OBJ_GLOSSARY"));
    object.Update();
  }
}

// Those that were sent to a plan and came back no more.
void BroughtBack::DropResources() {
  Recordset sent = AskStatic(
      &source_,
      "select Num from Object_Pool where Send_to_Project = 1 and Msp_ProjID = ", project_);
  for (; !sent.Eof(); sent.MoveNext()) {
    const Value number = sent.Field("Num");
    if (number.IsNull()) continue;
    const bool isThere =
        !AskStatic(&source_, "select RES_UID from MSP_RESOURCES where PROJ_ID = ", project_,
                   " and KV7_OBJ_HEX = ", number)
             .Eof();
    if (isThere) continue;
    for (Recordset object = Row("Object_Pool", "Num", number); !object.Eof(); object.MoveNext()) {
      object.Delete();
    }
  }
}

void BroughtBack::NumberJunctions() {
  for (Recordset rows = Rows("Junctions_in_Scenario"); !rows.Eof(); rows.MoveNext()) {
    if (!IsNumber(rows.Field("Num"))) continue;
    const std::int32_t number = ToInt32(rows.Field("Num"));
    if (IsBlank(rows.Field("ID"))) {
      rows.SetField("ID", "J" + std::to_string(number));
      rows.Update();
    }
    junctions_[number] = Joined(rows.Field("ID"));
  }
}

void BroughtBack::SettleLinks() {
  for (Recordset links = Rows("Links_in_Scenario"); !links.Eof(); links.MoveNext()) {
    for (const char* end : {"Origin", "Destination"}) SettleEnd(links, end);
    links.Update();
  }
}

// What the text of a rebuilt model says of its scenarios, and its rows don't.
void BroughtBack::SettleScenarios() {
  constexpr std::pair<const char*, const char*> kDefaults[] = {
      {"ID", "1"}, {"Revision_Number", "1"}, {"Review_Status", "Working"}};
  for (Recordset rows = Rows("Scenario"); !rows.Eof(); rows.MoveNext()) {
    for (const auto& [column, value] : kDefaults) {
      if (rows.Field(column).IsNull()) rows.SetField(column, value);
    }
    rows.Update();
  }
}

void BroughtBack::SettleEnd(Recordset& link, const std::string& end) {
  const Value number = link.Field(end + "_Num");
  if (number.IsNull()) return;
  for (const auto& [names, type] : {std::pair{&units_, program::kProcessOccurrence},
                                    std::pair{&junctions_, program::kJunction}}) {
    const auto found = names->find(ToInt32(number));
    if (found == names->end()) continue;
    link.SetField(end + "_Type", type);
    link.SetField(end + "_Name", found->second);
  }
}

}  // namespace merivane::translator
