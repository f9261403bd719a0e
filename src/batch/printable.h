// Text of files and databases on its way to a terminal.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace merivane::batch {

// UTF-8 with "?" for each control character, so that no name can send commands to the terminal.
// Line feeds stay in a text of several lines.
std::string PrintableText(const std::string& utf8);
std::string PrintableLine(const std::string& utf8);

// On several lines or on one, with control characters as escapes and "\uFFFD" for what is no UTF-8.
std::string PrintableJson(const nlohmann::ordered_json& json);
std::string PrintableJsonLine(const nlohmann::ordered_json& json);

}  // namespace merivane::batch
