#include "reader_records.h"

#include <utility>

#include "runtime/conversions.h"

namespace merivane::neutraltext {

namespace {

Cell CellOf(const ModelToProject& state, const RecordColumn& column) {
  if (const auto* field = std::get_if<FieldVariable FieldVariables::*>(&column.source)) {
    const FieldVariable& variable = state.fields.**field;
    return {column.name, variable, &variable};
  }
  if (const auto* number = std::get_if<std::int16_t ModelToProject::*>(&column.source)) {
    return {column.name, state.**number};
  }
  return {column.name, state.*std::get<std::string ModelToProject::*>(column.source)};
}

void AddCells(const ModelToProject& state, std::span<const RecordColumn> columns,
              std::vector<Cell>& cells) {
  for (const RecordColumn& column : columns) cells.push_back(CellOf(state, column));
}

bool IsWanted(const ModelToProject& state, const Record& record) {
  if (record.inAnyProject) return true;
  return state.gMspProjId != 0 && (record.key == nullptr || !IsBlank(state.fields.*record.key));
}

// Whether a listener leaves the row to the database; true without one.
bool IsStored(const ModelToProject& state, RowChange change, const Record& record,
              std::span<const Cell> cells) {
  if (!state.readerListener) return true;
  const bool stored = state.readerListener->OnRow(change, record.table, cells);
  for (const Cell& cell : cells) {
    if (cell.variable) cell.variable->fresh = false;
  }
  return stored;
}

std::string RowsOf(const Record& record) { return "select * from " + std::string(record.table); }

}  // namespace

void AddRecord(ModelToProject& state, const Record& record) {
  std::vector<Cell> cells;
  AddCells(state, record.columns, cells);
  AddCells(state, record.moreColumns, cells);
  AddRow(state, record, std::move(cells));
}

void AddRow(ModelToProject& state, const Record& record, std::vector<Cell> cells) {
  const bool wanted = IsWanted(state, record);
  if (wanted && !IsStored(state, RowChange::kAdded, record, cells)) return;
  Recordset& rows = state.*record.rows;
  rows.OpenDynamic(RowsOf(record), state.gMspConn.get());
  if (wanted) {
    rows.AddNew();
    if (state.gMspProjId != 0) rows.SetField("Msp_ProjID", state.gMspProjId);
    for (Cell& cell : cells) {
      if (!IsBlank(cell.value)) rows.SetField(cell.column, std::move(cell.value));
    }
    rows.Update();
  }
  rows.Close();
}

bool SetInLastRow(ModelToProject& state, const Record& record,
                  std::span<const RecordColumn> columns, std::string_view condition) {
  std::vector<Cell> cells;
  AddCells(state, columns, cells);
  return SetInLastRow(state, record, std::move(cells), condition);
}

bool SetInLastRow(ModelToProject& state, const Record& record, std::vector<Cell> cells,
                  std::string_view condition) {
  if (!IsStored(state, RowChange::kChanged, record, cells)) return true;
  Recordset& rows = state.*record.rows;
  rows.OpenDynamic(RowsOf(record) + " where Msp_ProjID = " + std::to_string(state.gMspProjId) +
                       std::string(condition),
                   state.gMspConn.get());
  const bool found = rows.FindLast();
  if (found) {
    for (Cell& cell : cells) rows.SetField(cell.column, std::move(cell.value));
    rows.Update();
  }
  rows.Close();
  return found;
}

}  // namespace merivane::neutraltext
