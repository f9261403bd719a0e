#include "pictures/style.h"

#include <array>
#include <string_view>

namespace merivane::pictures {

namespace {

// The style on white paper, and the colours on a dark screen.
struct Look {
  Style light;
  const char* darkFill;
  const char* darkStroke;
};

constexpr const char* kText = "#1f2933";
constexpr const char* kQuiet = "#5f6c7b";
constexpr const char* kLine = "#334e68";
constexpr const char* kPaper = "#ffffff";
constexpr const char* kNone = "none";

constexpr const char* kDarkText = "#e4e9ee";
constexpr const char* kDarkQuiet = "#9fb0c0";
constexpr const char* kDarkLine = "#86a8c8";
constexpr const char* kDarkSheet = "#1b242e";

// Of what is grey.
struct Faint {
  const char* text;
  const char* line;
  const char* sheet;
};
constexpr Faint kFaintLight{"#616d7a", "#7f8b97", "#f7f8fa"};
constexpr Faint kFaintDark{"#8592a0", "#66727e", "#181e25"};

constexpr std::array<Look, static_cast<std::size_t>(Ink::kCount)> kLooks{{
    {{"unit", kPaper, kLine, 1.4, "", 0, false}, kDarkSheet, kDarkLine},
    {{"behind", "#d9e2ec", kLine, 1.0, "", 0, false}, "#2a3846", kDarkLine},
    {{"strip", "#eef3f8", kLine, 1.4, "", 0, false}, "#243140", kDarkLine},
    {{"divider", kNone, kLine, 1.0, "", 0, false}, kNone, kDarkLine},
    {{"name", kText, kNone, 0, "", 12, false}, kDarkText, kNone},
    {{"number", "#486581", kNone, 0, "", 10, false}, kDarkQuiet, kNone},
    {{"objects", kQuiet, kNone, 0, "", 10, false}, kDarkQuiet, kNone},
    {{"junction", kPaper, kLine, 1.4, "", 0, false}, kDarkSheet, kDarkLine},
    {{"bar", kNone, kLine, 1.4, "", 0, false}, kNone, kDarkLine},
    {{"sign", kText, kNone, 0, "", 14, true}, kDarkText, kNone},
    {{"jname", kQuiet, kNone, 0, "", 9, false}, kDarkQuiet, kNone},
    {{"link", kNone, "#486581", 1.3, "", 0, false}, kNone, kDarkLine},
    {{"relation", kNone, "#486581", 1.3, "5 3", 0, false}, kNone, kDarkLine},
    {{"arrow", "#486581", kNone, 0, "", 0, false}, kDarkLine, kNone},
    {{"title", kText, kNone, 0, "", 17, true}, kDarkText, kNone},
    {{"subtitle", kQuiet, kNone, 0, "", 11, false}, kDarkQuiet, kNone},
    {{"listed", kText, kNone, 0, "", 11, false}, kDarkText, kNone},
    {{"listno", kQuiet, kNone, 0, "", 10, false}, kDarkQuiet, kNone},
    {{"grid", kNone, "#e4e9ee", 1.0, "", 0, false}, kNone, "#2c3742"},
    {{"ground", kPaper, kNone, 0, "", 0, false}, "#14191f", kNone},
    {{"weekend", "#f3f5f8", kNone, 0, "", 0, false}, "#1b222a", kNone},
    {{"axis", kQuiet, kNone, 0, "", 10, false}, kDarkQuiet, kNone},
    {{"task", "#5b8db8", kNone, 0, "", 0, false}, "#5b93c4", kNone},
    {{"critical", "#c65d44", kNone, 0, "", 0, false}, "#d9745c", kNone},
    {{"summary", kLine, kNone, 0, "", 0, false}, "#b6c6d6", kNone},
    {{"milestone", kText, kNone, 0, "", 0, false}, kDarkText, kNone},
    {{"before", "#748ba3", kNone, 0, "", 0, false}, "#8599ad", kNone},
    {{"overload", "#8e3b8a", kNone, 0, "", 0, false}, "#cf7fcb", kNone},
    {{"tname", kText, kNone, 0, "", 11, false}, kDarkText, kNone},
    {{"sname", kText, kNone, 0, "", 11, true}, kDarkText, kNone},
    {{"who", kQuiet, kNone, 0, "", 10, false}, kDarkQuiet, kNone},
    {{"tlink", kNone, "#768da6", 1.1, "", 0, false}, kNone, "#768da6"},
    {{"tarrow", "#768da6", kNone, 0, "", 0, false}, "#768da6", kNone},
    {{"clink", kNone, "#c65d44", 1.1, "", 0, false}, kNone, "#c65d44"},
    {{"carrow", "#c65d44", kNone, 0, "", 0, false}, "#c65d44", kNone},
    {{"finding", "#b3402a", kNone, 0, "", 0, false}, "#d9745c", kNone},
    {{"added", kNone, "#1a7f37", 2.4, "", 0, false}, kNone, "#4cc26b"},
    {{"changed", kNone, "#0b61c4", 2.4, "", 0, false}, kNone, "#6db3ff"},
    {{"removed", kNone, "#b3261e", 2.4, "5 3", 0, false}, kNone, "#ff8a80"},
}};

bool IsNone(const char* colour) { return std::string_view(colour) == kNone; }

}  // namespace

Style StyleOf(Ink ink, Ground ground) {
  const Look& look = kLooks[static_cast<std::size_t>(ink)];
  Style style = look.light;
  if (ground == Ground::kDark) {
    style.fill = look.darkFill;
    style.stroke = look.darkStroke;
  }
  return style;
}

Style FaintStyleOf(Ink ink, Ground ground) {
  Style style = StyleOf(ink, ground);
  if (ink == Ink::kAdded || ink == Ink::kChanged || ink == Ink::kRemoved) return style;
  const Faint& faint = ground == Ground::kDark ? kFaintDark : kFaintLight;
  if (style.size > 0) {
    style.fill = faint.text;
  } else {
    if (!IsNone(style.fill)) style.fill = IsNone(style.stroke) ? faint.line : faint.sheet;
    if (!IsNone(style.stroke)) style.stroke = faint.line;
  }
  return style;
}

}  // namespace merivane::pictures
