// The line primitives that every section of the Neutral Text reader is made of. gLine is the line
// at which the next step goes on. Running past the end of the file is error 62.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "neutraltext/modGlobal.h"

namespace merivane {

void NextLine(ModelToProject& state);
void NextLines(ModelToProject& state, int count);

// Stays where the current line already is the keyword. Keywords are whole lines.
void SkipTo(ModelToProject& state, std::string_view keyword);
void SkipToLineThatHolds(ModelToProject& state, std::string_view text);

// The lines from the current one up to the closing keyword, each with CR LF behind it.
std::string CollectTo(ModelToProject& state, std::string_view closing);
// The same from behind the opening keyword.
std::string ReadBlock(ModelToProject& state, std::string_view opening, std::string_view closing);

// A field of the current line, or of the next one.
std::string Field(const ModelToProject& state, std::size_t start, std::size_t length);
std::string NextField(ModelToProject& state, std::size_t start, std::size_t length);

// Assigns what isn't empty, so that an empty field leaves the variable to its earlier value.
void Keep(Value& variable, std::string text);
void KeepInteger(Value& variable, const std::string& text);

void KeepNextField(ModelToProject& state, Value& variable, std::size_t start, std::size_t length);
void KeepBlock(ModelToProject& state, Value& variable, std::string_view opening,
               std::string_view closing);

// Longest text that a pool, a referent list and an OSTN list may have.
inline constexpr std::size_t kTextLimit = 64000;

// Whether a record with a number of its own goes into its table: only in a settled project.
bool IsRecordWanted(const ModelToProject& state);

// One column of a row to be added. `value` lives as long as the call that it is handed to.
struct Cell {
  std::string_view column;
  const Value& value;
};

// Adds a row to the table that the statement opens, leaving out columns whose value is blank. A
// row that is not `wanted` still opens and closes the table.
void AddRow(ModelToProject& state, Recordset& rows, std::string_view sql, bool wanted,
            std::initializer_list<Cell> cells);

// "select * from <table> where Msp_ProjID = <number>".
std::string RowsOfProject(const ModelToProject& state, std::string_view table);

}  // namespace merivane
