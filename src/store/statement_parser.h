// Reads the shape of a statement against the table that it names.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "table_schema.h"

namespace merivane {

struct OutputField {
  std::string name;
  std::string sql;
  int column = -1;  // of the table; -1 for an aggregate
};

// SELECT list FROM table [WHERE condition] [ORDER BY columns], or UPDATE table SET ... [WHERE ...].
// The pieces are SQL for SQLite, with literals as numbered parameters.
struct ParsedStatement {
  const TableSchema* table = nullptr;
  bool aggregate = false;
  std::vector<OutputField> fields;  // of a SELECT
  std::string assignments;          // of an UPDATE
  std::vector<int> assigned;
  std::string condition;  // empty without WHERE
  std::string order;      // empty without ORDER BY
  std::string reversedOrder;
  std::vector<bool> used;          // by column: WHERE or ORDER BY name it
  std::vector<int> equalColumns;   // every row has one literal in it
  std::vector<int> prefixColumns;  // every row begins with one literal in it
  int parameters = 0;              // the literals, numbered from 1; of an UPDATE from 2
  bool hasParameter = false;       // of an UPDATE: number 1
};

// Gives the schema of a table; throws where there is none.
using FindTable = std::function<const TableSchema&(std::string_view name)>;

// `shape` as SplitLiterals makes it, `sql` for messages. Failures are RunTimeErrors:
// kStatementError for anything malformed or behind the statement's end, kUnknownName for an unknown
// column.
ParsedStatement ParseSelect(std::string_view shape, std::string_view sql, const FindTable& find);

// One '?' may stand in it, the statement's parameter.
ParsedStatement ParseUpdate(std::string_view shape, std::string_view sql, const FindTable& find);

}  // namespace merivane
