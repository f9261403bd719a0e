#include "model_rows.h"

#include "program/model_words.h"
#include "reconcile/plan_content.h"
#include "store/ask.h"

namespace merivane::reconcile {

using namespace program;

namespace {

std::int32_t NumberOf(Recordset& row, const char* column) {
  return NumberIn(row.Field(column)).value_or(0);
}

bool IsSet(Recordset& row, const char* column) { return NumberOf(row, column) != 0; }

std::string WhereOf(const TableChange& change, std::int32_t project) {
  std::string where = " where Msp_ProjID = " + std::to_string(project);
  for (const auto& [column, number] : change.key) {
    where.append(" and ").append(column).append(" = ").append(std::to_string(number));
  }
  return where;
}

void SetFields(Recordset& row, const TableChange::Fields& fields) {
  for (const auto& [column, value] : fields) row.SetField(column, value);
}

void AddRow(Connection& connection, std::int32_t project, const TableChange& change) {
  Recordset rows = Ask(&connection, "select * from ", change.table);
  rows.AddNew();
  rows.SetField("Msp_ProjID", project);
  for (const auto& [column, number] : change.key) rows.SetField(column, number);
  SetFields(rows, change.fields);
  rows.Update();
}

void CopyRow(Connection& connection, std::int32_t project, const TableChange& change) {
  Recordset from = AskStatic(&connection, "select * from ", change.table, WhereOf(change, project));
  if (from.Eof()) return;
  Recordset rows = Ask(&connection, "select * from ", change.table);
  rows.AddNew();
  for (int column = 0; column < from.FieldCount(); ++column) {
    rows.SetField(from.FieldName(column), from.Field(column));
  }
  SetFields(rows, change.fields);
  rows.Update();
}

}  // namespace

ModelRows ReadModelRows(Connection& connection, std::int32_t project) {
  ModelRows model;
  const auto forEach = [&](const char* table, auto take) {
    Recordset rows = AskStatic(&connection, "select * from ", table,
                               " where Msp_ProjID = ", std::to_string(project));
    for (; !rows.Eof(); rows.MoveNext()) take(rows);
  };
  forEach("Activity_in_Scenario", [&](Recordset& row) {
    model.units[NumberOf(row, "Use_Num")] = {
        NumberOf(row, "Scenario_Num"), NumberOf(row, "Process_Num"), Joined(row.Field("Name")),
        Joined(row.Field("Labor_Rule")), IsSet(row, "Send_to_Project")};
  });
  forEach("Activity_Pool", [&](Recordset& row) {
    model.processes[NumberOf(row, "Num")] = {Joined(row.Field("Name")),
                                             NoteText(Joined(row.Field("Glossary")))};
  });
  forEach("Scenario", [&](Recordset& row) {
    model.scenarios[NumberOf(row, "Num")] = {NumberOf(row, "Parent_Num"),
                                             IsSet(row, "Send_to_Project")};
  });
  forEach("Junctions_in_Scenario", [&](Recordset& row) {
    model.junctionOrder.push_back(NumberOf(row, "Num"));
    model.junctions[NumberOf(row, "Num")] = {NumberOf(row, "Scenario_Num"),
                                             Joined(row.Field("Cardinality")) == kFanOut,
                                             Joined(row.Field("Type")), Joined(row.Field("ID"))};
  });
  forEach("Links_in_Scenario", [&](Recordset& row) {
    const std::int32_t number = NumberOf(row, "Num");
    const auto order = static_cast<std::int32_t>(model.linkOrder.size());
    const std::int32_t link = model.links.contains(number) ? kSecondLinks + order : number;
    model.linkOrder.push_back(link);
    model.links[link] = {number, NumberOf(row, "Scenario_Num"), NumberOf(row, "Origin_Num"),
                         NumberOf(row, "Destination_Num")};
  });
  forEach("Object_Pool", [&](Recordset& row) {
    model.objects[NumberOf(row, "Num")] = {Joined(row.Field("Name")), Joined(row.Field("Alias")),
                                           IsSet(row, "Send_to_Project")};
  });
  forEach("Object_in_Activity_in_Scenario", [&](Recordset& row) {
    model.uses.emplace_back(NumberOf(row, "Activity_Num"), NumberOf(row, "Object_Occ_Num"));
  });
  return model;
}

void ApplyChanges(Connection& connection, std::int32_t project,
                  const std::vector<TableChange>& changes) {
  for (const TableChange& change : changes) {
    if (change.kind == TableChange::Kind::kAdd) {
      AddRow(connection, project, change);
      continue;
    }
    if (change.kind == TableChange::Kind::kCopy) {
      CopyRow(connection, project, change);
      continue;
    }
    Recordset rows = Ask(&connection, "select * from ", change.table, WhereOf(change, project));
    for (; !rows.Eof(); rows.MoveNext()) {
      if (change.kind == TableChange::Kind::kRemove) {
        rows.Delete();
      } else {
        SetFields(rows, change.fields);
        rows.Update();
      }
    }
  }
}

}  // namespace merivane::reconcile
