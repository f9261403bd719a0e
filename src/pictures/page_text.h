// Pieces of the report page.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace merivane::pictures {

// Windows-1252 as text of the page, lines parted by breaks.
std::string Lines(const std::string& text);

// "1 unit", "2 units".
std::string Counted(std::size_t count, const std::string& what);

// `text` is markup.
std::string LinkTo(const std::string& id, const std::string& text);

struct Column {
  const char* head;
  const char* width = "";  // "narrow": no more than it needs; "wide"
};

// Cells are markup. On a narrow screen each stands in a line of its own behind its head.
class Table {
 public:
  explicit Table(std::vector<Column> columns);
  void Row(const std::vector<std::string>& cells);
  std::string Html() const { return html_ + "</tbody></table>\n"; }

 private:
  std::vector<Column> columns_;
  std::string html_;
};

}  // namespace merivane::pictures
