// Characters that the code page of model texts does not have.
#include <algorithm>
#include <array>
#include <cstdio>

#include "reading.h"

namespace merivane::inspect {

namespace {

bool HasNoCharacter(unsigned char byte) {
  return byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
}

bool Continues(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

// Whether every byte beyond ASCII belongs to a sequence of UTF-8.
bool IsUtf8(std::string_view line) {
  for (std::size_t i = 0; i < line.size();) {
    const auto byte = static_cast<unsigned char>(line[i]);
    const std::size_t length = byte < 0x80                   ? 1
                               : byte >= 0xC2 && byte < 0xE0 ? 2
                               : byte >= 0xE0 && byte < 0xF0 ? 3
                               : byte >= 0xF0 && byte < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || i + length > line.size()) return false;
    for (std::size_t next = 1; next < length; ++next) {
      if (!Continues(static_cast<unsigned char>(line[i + next]))) return false;
    }
    i += length;
  }
  return true;
}

bool IsAscii(std::string_view line) {
  for (const char character : line) {
    if (static_cast<unsigned char>(character) >= 0x80) return false;
  }
  return true;
}

std::string Hexadecimal(unsigned char byte) {
  std::array<char, 3> text{};
  std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned>(byte));
  return text.data();
}

}  // namespace

// Tabs may stand in texts; in front of a line that the reader looks for they make it another one.
void Reading::ReportControlCharacter(std::size_t number) {
  const auto isControl = [](char character) {
    return static_cast<unsigned char>(character) < 0x20 && character != '\t';
  };
  const std::string_view line = Line(number);
  const auto* found = std::find_if(line.begin(), line.end(), isControl);
  if (found == line.end()) return;
  findings_.push_back({Severity::kWarning,
                       number,
                       {},
                       "The line holds the control character " +
                           Hexadecimal(static_cast<unsigned char>(*found)) + " (hexadecimal).",
                       "Take it out."});
}

void Reading::ReportCharacters() {
  for (std::size_t number = 1; number <= lines_.Size(); ++number) {
    const std::string_view line = Line(number);
    ReportControlCharacter(number);
    if (IsAscii(line)) continue;
    if (IsUtf8(line)) {
      findings_.push_back({Severity::kWarning,
                           number,
                           {},
                           "The line is written in UTF-8, so that each letter beyond ASCII is read "
                           "as two or more characters.",
                           "Save the text in the code page Windows-1252."});
      continue;
    }
    for (const char character : line) {
      const auto byte = static_cast<unsigned char>(character);
      if (!HasNoCharacter(byte)) continue;
      findings_.push_back({Severity::kWarning,
                           number,
                           {},
                           "The line holds the code " + Hexadecimal(byte) +
                               " (hexadecimal), which the code page Windows-1252 has no character "
                               "for.",
                           "Replace it by a character of that code page."});
      break;
    }
  }
}

}  // namespace merivane::inspect
