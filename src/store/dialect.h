// The statement texts of the program: literals are taken out of them, so that all statements of one
// shape share one parse and one prepared statement.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sqlite_handle.h"

namespace merivane {

// What stands for a literal in a shape.
inline constexpr char kNumberMark = '\x01';
inline constexpr char kTextMark = '\x02';
inline constexpr char kPrefixMark = '\x03';   // behind Like: a text whose only '%' ends it
inline constexpr char kPatternMark = '\x04';  // behind Like: any other text

// Parts of a statement text. The shape is the text with marks for literals; a prefix has two
// literals, the bounds of its range: from the first up to and without the second.
struct SplitStatement {
  std::string shape;
  std::vector<Literal> literals;
};

// Numbers and texts (in single or double quotes, a doubled quote standing for one) become literals;
// names in brackets are left as they are. An open quote or bracket, or a character that no
// statement holds, is kStatementError. `out` is overwritten; its memory is used again.
void SplitLiterals(std::string_view sql, SplitStatement& out);

// The error of a malformed statement: what is wrong, and the text.
RunTimeError StatementError(const std::string& what, std::string_view sql);

bool IsNameStart(char character);
bool IsNamePart(char character);

// Letters of ASCII without case, as names of tables and columns compare.
bool SameName(std::string_view a, std::string_view b);

}  // namespace merivane
