// The rows that the reader adds: each kind of record is a list of columns and of what fills them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "neutraltext/modGlobal.h"

namespace merivane::neutraltext {

// A field variable, or a number or text that holds for all records inside the one around them.
using ColumnSource = std::variant<FieldVariable FieldVariables::*, std::int16_t ModelToProject::*,
                                  std::string ModelToProject::*>;

struct RecordColumn {
  std::string_view name;
  ColumnSource source;
};

struct Record {
  std::string_view table;
  Recordset ModelToProject::*rows;
  std::span<const RecordColumn> columns = {};
  std::span<const RecordColumn> moreColumns = {};  // behind those that other records have too
  FieldVariable FieldVariables::*key = nullptr;    // no row without it
  bool inAnyProject = false;                       // has a row in a project that isn't settled, too
};

// Shared by the sections that fill an occurrence.
extern const Record kOccurrence;

// Adds a row under the project's number, unless a listener takes it. Columns whose value is blank
// are left out. Where no row is wanted the table is opened and closed all the same.
void AddRecord(ModelToProject& state, const Record& record);
void AddRow(ModelToProject& state, const Record& record, std::vector<Cell> cells);

// Sets the columns, blank ones too, in the project's last row of the record's table: the one being
// read. `condition` goes on the statement that asks for the rows. False where there is no row.
bool SetInLastRow(ModelToProject& state, const Record& record,
                  std::span<const RecordColumn> columns, std::string_view condition = {});
bool SetInLastRow(ModelToProject& state, const Record& record, std::vector<Cell> cells,
                  std::string_view condition = {});

}  // namespace merivane::neutraltext
