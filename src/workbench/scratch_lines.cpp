#include "scratch_lines.h"

#include <algorithm>

#include "inspect/box_text.h"

namespace merivane::workbench {

void AddLines(const QuietDesktop& desktop, std::vector<std::string>& lines) {
  for (const std::string& box : desktop.MessageTexts()) {
    const std::string line = inspect::OneLine(box);
    if (line.empty() || std::find(lines.begin(), lines.end(), line) != lines.end()) continue;
    lines.push_back(line);
  }
}

}  // namespace merivane::workbench
