// Text of files and databases on its way to a terminal.
#pragma once

#include <string>

namespace merivane::batch {

// UTF-8 with "?" for each control character, so that no name can send commands to the terminal.
// Line feeds stay in a text of several lines.
std::string PrintableText(const std::string& utf8);
std::string PrintableLine(const std::string& utf8);

// The JSON text with control characters as escapes, but for the line feeds between its lines.
std::string PrintableJson(const std::string& json);

}  // namespace merivane::batch
