#include "pictures/style.h"

#include <array>
#include <string_view>

namespace merivane::pictures {

namespace {

constexpr const char* kText = "#1f2933";
constexpr const char* kQuiet = "#5f6c7b";
constexpr const char* kLine = "#334e68";
constexpr const char* kPaper = "#ffffff";
constexpr const char* kNone = "none";
constexpr const char* kFaintText = "#616d7a";
constexpr const char* kFaintLine = "#7f8b97";

constexpr std::array<Style, static_cast<std::size_t>(Ink::kCount)> kStyles{{
    {"unit", kPaper, kLine, 1.4, "", 0, false},
    {"behind", "#d9e2ec", kLine, 1.0, "", 0, false},
    {"strip", "#eef3f8", kLine, 1.4, "", 0, false},
    {"divider", kNone, kLine, 1.0, "", 0, false},
    {"name", kText, kNone, 0, "", 12, false},
    {"number", "#486581", kNone, 0, "", 10, false},
    {"objects", kQuiet, kNone, 0, "", 10, false},
    {"junction", kPaper, kLine, 1.4, "", 0, false},
    {"bar", kNone, kLine, 1.4, "", 0, false},
    {"sign", kText, kNone, 0, "", 14, true},
    {"jname", kQuiet, kNone, 0, "", 9, false},
    {"link", kNone, "#486581", 1.3, "", 0, false},
    {"relation", kNone, "#486581", 1.3, "5 3", 0, false},
    {"arrow", "#486581", kNone, 0, "", 0, false},
    {"title", kText, kNone, 0, "", 17, true},
    {"subtitle", kQuiet, kNone, 0, "", 11, false},
    {"listed", kText, kNone, 0, "", 11, false},
    {"listno", kQuiet, kNone, 0, "", 10, false},
    {"grid", kNone, "#e4e9ee", 1.0, "", 0, false},
    {"ground", kPaper, kNone, 0, "", 0, false},
    {"weekend", "#f3f5f8", kNone, 0, "", 0, false},
    {"axis", kQuiet, kNone, 0, "", 10, false},
    {"task", "#5b8db8", kNone, 0, "", 0, false},
    {"critical", "#c65d44", kNone, 0, "", 0, false},
    {"summary", kLine, kNone, 0, "", 0, false},
    {"milestone", kText, kNone, 0, "", 0, false},
    {"before", "#748ba3", kNone, 0, "", 0, false},
    {"overload", "#8e3b8a", kNone, 0, "", 0, false},
    {"tname", kText, kNone, 0, "", 11, false},
    {"sname", kText, kNone, 0, "", 11, true},
    {"who", kQuiet, kNone, 0, "", 10, false},
    {"tlink", kNone, "#768da6", 1.1, "", 0, false},
    {"tarrow", "#768da6", kNone, 0, "", 0, false},
    {"clink", kNone, "#c65d44", 1.1, "", 0, false},
    {"carrow", "#c65d44", kNone, 0, "", 0, false},
    {"finding", "#b3402a", kNone, 0, "", 0, false},
    {"added", kNone, "#1a7f37", 2.4, "", 0, false},
    {"changed", kNone, "#0b61c4", 2.4, "", 0, false},
    {"removed", kNone, "#b3261e", 2.4, "5 3", 0, false},
}};

}  // namespace

const Style& StyleOf(Ink ink) { return kStyles[static_cast<std::size_t>(ink)]; }

Style FaintStyleOf(Ink ink) {
  Style style = StyleOf(ink);
  if (ink == Ink::kAdded || ink == Ink::kChanged || ink == Ink::kRemoved) return style;
  if (style.size > 0) {
    style.fill = kFaintText;
  } else {
    if (std::string_view(style.fill) != kNone)
      style.fill = std::string_view(style.stroke) == kNone ? kFaintLine : "#f7f8fa";
    if (std::string_view(style.stroke) != kNone) style.stroke = kFaintLine;
  }
  return style;
}

}  // namespace merivane::pictures
