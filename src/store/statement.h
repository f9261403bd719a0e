// The program's statements in SQLite's words: literals become parameters, so that all statements of
// one shape share one prepared statement, and SQLite judges what remains.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "table_schema.h"

namespace merivane::store {

// The shape is the text with a mark for each literal; behind Like, a text whose only '%' ends it is
// a prefix, which has two literals: its range goes from the first up to and without the second.
struct SplitStatement {
  std::string shape;
  std::vector<Literal> literals;
};

// Numbers, also such as touch a word, and texts (in single or double quotes, a doubled quote
// standing for one) become literals; names in brackets are left as they are. An open quote or
// bracket, or a character that no statement holds, is kStatementError. `out` is overwritten; its
// memory is used again.
void SplitLiterals(std::string_view sql, SplitStatement& out);

// A shape in pieces, by which a text is known again for less than splitting it costs.
class ShapePieces {
 public:
  explicit ShapePieces(std::string_view shape);

  // The text has that shape for certain, and these literals, which are added; false says nothing.
  // Failures as above.
  bool Fit(std::string_view sql, std::vector<Literal>& literals) const;

 private:
  std::vector<std::string> texts_;  // in front of each mark, and behind the last
  std::string marks_;
};

// SELECT list FROM table [WHERE condition] [ORDER BY columns], with literals as parameters that are
// numbered from 1.
struct StatementParts {
  const TableSchema* table = nullptr;
  std::vector<int> columns;  // of a list that holds columns alone
  std::string list;          // any other list
  std::string condition;     // empty without WHERE
  std::string order;         // empty without ORDER BY
  std::string reversedOrder;
  std::vector<bool> used;          // by column: WHERE or ORDER BY name it
  std::vector<int> equalColumns;   // every row has one literal in it
  std::vector<int> equalLiterals;  // which, of the statement's literals
  bool isAllEqual = false;         // and WHERE says nothing else
  std::vector<int> prefixColumns;  // every row begins with one literal in it
  int parameters = 0;
};

// Gives the schema of a table; throws where there is none.
using FindTable = std::function<const TableSchema&(std::string_view name)>;

// `shape` as SplitLiterals makes it, `sql` for messages. Failures are RunTimeErrors: kUnknownName
// for an unknown column, kStatementError for what SQLite refuses and for anything behind the end.
StatementParts ReadSelect(sqlite3* database, std::string_view shape, std::string_view sql,
                          const FindTable& find);

}  // namespace merivane::store
