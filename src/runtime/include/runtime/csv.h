// Lines of a table for a spreadsheet (RFC 4180).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runtime/conversions.h"

namespace merivane::runtime {

// A text that a spreadsheet would take for a formula (one that begins with '=', '+', '-', '@', a
// tab or a line end) gets an apostrophe in front; numbers keep their sign. What holds a comma, a
// quote or a line end stands in quotes.
inline std::string CsvCell(std::string_view text) {
  std::string cell(text);
  constexpr std::string_view kBeginsFormula = "=+-@\t\r\n";
  const bool mayBegin = !cell.empty() && kBeginsFormula.find(cell.front()) != std::string::npos;
  const bool isNumber = cell.find_first_not_of("+-.0123456789") == std::string::npos;
  if (mayBegin && !(isNumber && IsNumericText(cell))) cell.insert(0, 1, '\'');
  if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
  std::string quoted = "\"";
  for (const char letter : cell) quoted += letter == '"' ? "\"\"" : std::string(1, letter);
  return quoted + '"';
}

// The cells between commas, with CR LF behind.
inline std::string CsvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t at = 0; at < cells.size(); ++at) {
    line += (at == 0 ? "" : ",") + CsvCell(cells[at]);
  }
  return line + "\r\n";
}

}  // namespace merivane::runtime
