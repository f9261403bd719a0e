#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

[[noreturn]] void RefuseName(Desktop& desktop, std::string_view rule, const std::string& name,
                             const char* title) {
  desktop.ShowMessage(
      {std::string(rule) + "  Please change '" + name + "'.", MessageIcon::kCritical, title});
  RestoreMousePointer(desktop);
  desktop.EndProgram();
}

constexpr std::string_view kNoDoubleQuotes =
    "Merivane requires that UOB names do not have double quotes.";
constexpr std::string_view kNoCommas = "Merivane requires that Object names do not have commas.";

}  // namespace

std::string FieldAfterBlanks(std::string_view line, std::size_t start, std::size_t length) {
  const std::size_t blanks = Find(line, "  ", start);
  if (blanks == 0) return {};
  return std::string(line.substr(blanks + 1, length));
}

void PadToFiveDigits(std::string& text) {
  constexpr std::size_t kDigits = 5;
  if (text.size() < kDigits) text.insert(0, kDigits - text.size(), '0');
}

void ValidateUobName(Desktop& desktop, const std::string& name) {
  if (Holds(name, "\"")) RefuseName(desktop, kNoDoubleQuotes, name, "IDEF3 to Project");
}

void ValidateObjectName(Desktop& desktop, const std::string& name) {
  if (Holds(name, ",")) RefuseName(desktop, kNoCommas, name, "IDEF3 to Project 2000");
  if (Holds(name, "\"")) RefuseName(desktop, kNoDoubleQuotes, name, "IDEF3 to Project 2000");
}

}  // namespace merivane::neutraltext
