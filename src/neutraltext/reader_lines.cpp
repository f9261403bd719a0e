#include "reader_lines.h"

#include <utility>

#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane {

void NextLine(ModelToProject& state) { state.gLine = state.files.ReadLine(state.gTextFile); }

void NextLines(ModelToProject& state, int count) {
  for (int i = 0; i < count; ++i) NextLine(state);
}

void SkipTo(ModelToProject& state, std::string_view keyword) {
  while (state.gLine != keyword) NextLine(state);
}

void SkipToLineThatHolds(ModelToProject& state, std::string_view text) {
  while (!Holds(state.gLine, text)) NextLine(state);
}

std::string CollectTo(ModelToProject& state, std::string_view closing) {
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
  return FieldAfterBlanks(state.gLine, start, length);
}

std::string NextField(ModelToProject& state, std::size_t start, std::size_t length) {
  NextLine(state);
  return Field(state, start, length);
}

void Keep(Value& variable, std::string text) {
  if (!text.empty()) variable = std::move(text);
}

void KeepInteger(Value& variable, const std::string& text) {
  if (!text.empty()) variable = ToInt16(text);
}

void KeepNextField(ModelToProject& state, Value& variable, std::size_t start, std::size_t length) {
  Keep(variable, NextField(state, start, length));
}

void KeepBlock(ModelToProject& state, Value& variable, std::string_view opening,
               std::string_view closing) {
  Keep(variable, ReadBlock(state, opening, closing));
}

bool IsRecordWanted(const ModelToProject& state) {
  return state.gMspProjId != 0 && !IsBlank(state.fields.Num);
}

void AddRow(ModelToProject& state, Recordset& rows, std::string_view sql, bool wanted,
            std::initializer_list<Cell> cells) {
  rows.OpenDynamic(sql, state.gMspConn.get());
  if (wanted) {
    rows.AddNew();
    for (const Cell& cell : cells) {
      if (!IsBlank(cell.value)) rows.SetField(cell.column, cell.value);
    }
    rows.Update();
  }
  rows.Close();
}

std::string RowsOfProject(const ModelToProject& state, std::string_view table) {
  std::string sql = "select * from ";
  sql.append(table).append(" where Msp_ProjID = ").append(std::to_string(state.gMspProjId));
  return sql;
}

}  // namespace merivane
