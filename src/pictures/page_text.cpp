#include "page_text.h"

#include <string_view>
#include <utility>

#include "text_lines.h"

namespace merivane::pictures {

std::string Lines(const std::string& text) {
  std::string lines;
  for (const char letter : text) {
    lines += letter == '\n' ? "<br>" : Escaped(std::string_view(&letter, 1));
  }
  return lines;
}

std::string LinkTo(const std::string& id, const std::string& text) {
  return "<a href=\"#" + id + "\">" + text + "</a>";
}

Table::Table(std::vector<PageColumn> columns) : columns_(std::move(columns)) {
  html_ = "<table>\n<thead><tr>";
  for (const PageColumn& column : columns_) {
    html_ += std::string("<th scope=\"col\">") + column.head + "</th>";
  }
  html_ += "</tr></thead>\n<tbody>\n";
}

void Table::Row(const std::vector<std::string>& cells) {
  html_ += "<tr>";
  for (std::size_t at = 0; at < cells.size(); ++at) {
    html_ += "<td";
    const std::string width = columns_[at].width;
    if (!width.empty()) html_ += " class=\"" + width + '"';
    html_ += std::string(" data-of=\"") + columns_[at].head + "\">" + cells[at] + "</td>";
  }
  html_ += "</tr>\n";
}

}  // namespace merivane::pictures
