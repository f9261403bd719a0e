// A text, of a box mostly, for a list where each entry is one line.
#pragma once

#include <string>

#include "runtime/text.h"

namespace merivane::inspect {

// With one blank in the place of line ends and of several blanks, and none around it.
inline std::string OneLine(const std::string& box) {
  std::string text;
  for (const char letter : box) {
    const bool isBlank = letter == ' ' || letter == '\r' || letter == '\n';
    if (!isBlank) {
      text += letter;
    } else if (!text.empty() && text.back() != ' ') {
      text += ' ';
    }
  }
  return runtime::Trim(text);
}

}  // namespace merivane::inspect
