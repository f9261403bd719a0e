#include "reader_lines.h"

#include <utility>

#include "neutraltext/modGlobal.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

void NextLine(ModelToProject& state) {
  state.gLine = state.files.ReadLine(state.gTextFile);
  if (state.readerListener) state.readerListener->OnLine(state.gLine);
}

void NextLines(ModelToProject& state, int count) {
  for (int i = 0; i < count; ++i) NextLine(state);
}

void Search(ModelToProject& state, std::string_view keyword) {
  if (state.readerListener) state.readerListener->OnSearch(keyword);
}

void BeginRecord(ModelToProject& state, Element element, std::string_view listEnd) {
  if (state.readerListener) state.readerListener->OnRecord(element, listEnd);
}

void SkipTo(ModelToProject& state, std::string_view keyword) {
  Search(state, keyword);
  while (state.gLine != keyword) NextLine(state);
}

void SkipToLineThatHolds(ModelToProject& state, std::string_view text) {
  Search(state, text);
  while (!Holds(state.gLine, text)) NextLine(state);
}

std::string CollectTo(ModelToProject& state, std::string_view closing) {
  Search(state, closing);
  std::string block;
  while (state.gLine != closing) {
    block.append(state.gLine).append(kCrLf);
    NextLine(state);
  }
  return block;
}

std::string ReadBlock(ModelToProject& state, std::string_view opening, std::string_view closing) {
  SkipTo(state, opening);
  NextLine(state);
  return CollectTo(state, closing);
}

std::string Field(const ModelToProject& state, std::size_t start, std::size_t length) {
  if (state.readerListener) state.readerListener->OnField(start, length);
  return FieldAfterBlanks(state.gLine, start, length);
}

std::string NextField(ModelToProject& state, std::size_t start, std::size_t length) {
  NextLine(state);
  return Field(state, start, length);
}

void Keep(FieldVariable& variable, std::string text) {
  if (!text.empty()) variable = std::move(text);
}

void KeepInteger(FieldVariable& variable, const std::string& text) {
  if (!text.empty()) variable = ToInt16(text);
}

void KeepNextField(ModelToProject& state, FieldVariable& variable, std::size_t start,
                   std::size_t length) {
  Keep(variable, NextField(state, start, length));
}

void KeepBlock(ModelToProject& state, FieldVariable& variable, std::string_view opening,
               std::string_view closing) {
  Keep(variable, ReadBlock(state, opening, closing));
}

void Cut(ModelToProject& state, std::size_t length) {
  if (state.readerListener) state.readerListener->OnCut(length);
}

bool IsRecordWanted(const ModelToProject& state) {
  return state.gMspProjId != 0 && !IsBlank(state.fields.Num);
}

bool IsStored(const ModelToProject& state, RowChange change, std::string_view table,
              std::initializer_list<Cell> cells) {
  if (!state.readerListener) return true;
  const bool stored = state.readerListener->OnRow(change, table, cells);
  for (const Cell& cell : cells) {
    if (cell.variable) cell.variable->fresh = false;
  }
  return stored;
}

void AddRow(ModelToProject& state, Recordset& rows, std::string_view table, bool wanted,
            std::initializer_list<Cell> cells) {
  if (wanted && !IsStored(state, RowChange::kAdded, table, cells)) return;
  std::string sql = "select * from ";
  rows.OpenDynamic(sql.append(table), state.gMspConn.get());
  if (wanted) {
    rows.AddNew();
    for (const Cell& cell : cells) {
      if (!IsBlank(cell.value)) rows.SetField(cell.column, cell.value);
    }
    rows.Update();
  }
  rows.Close();
}

void ChangeLastRow(ModelToProject& state, Recordset& rows, std::string_view table,
                   std::string_view condition, std::initializer_list<Cell> cells) {
  if (!IsStored(state, RowChange::kChanged, table, cells)) return;
  rows.OpenDynamic(RowsOfProject(state, table).append(condition), state.gMspConn.get());
  if (!rows.Bof() && !rows.Eof()) {
    rows.MoveLast();
    for (const Cell& cell : cells) rows.SetField(cell.column, cell.value);
    rows.Update();
  }
  rows.Close();
}

std::string RowsOfProject(const ModelToProject& state, std::string_view table) {
  std::string sql = "select * from ";
  sql.append(table).append(" where Msp_ProjID = ").append(std::to_string(state.gMspProjId));
  return sql;
}

}  // namespace merivane::neutraltext
