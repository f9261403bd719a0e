// Lines of a table for a spreadsheet (RFC 4180).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace merivane::runtime {

// A text that a spreadsheet would take for a formula (one that begins with '=', '+', '-', '@', a
// tab or a line end) gets an apostrophe in front; numbers keep their sign. What holds a comma, a
// quote or a line end stands in quotes.
std::string CsvCell(std::string_view text);

// The cells between commas, with CR LF behind.
std::string CsvLine(const std::vector<std::string>& cells);

}  // namespace merivane::runtime
