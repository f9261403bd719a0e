#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

void RefuseName(ModelToProject& state, std::string_view rule, const std::string& name,
                const char* title) {
  if (state.readerListener && state.readerListener->OnRefusedName(rule)) return;
  Desktop& desktop = state.desktop;
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

void ValidateUobName(ModelToProject& state, const std::string& name) {
  if (Holds(name, "\"")) RefuseName(state, kNoDoubleQuotes, name, "IDEF3 to Project");
}

void ValidateObjectName(ModelToProject& state, const std::string& name) {
  if (Holds(name, ",")) RefuseName(state, kNoCommas, name, "IDEF3 to Project 2000");
  if (Holds(name, "\"")) RefuseName(state, kNoDoubleQuotes, name, "IDEF3 to Project 2000");
}

}  // namespace merivane::neutraltext
