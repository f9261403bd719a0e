// Notes of a plan's tasks, which its tables keep as rich text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace merivane::runtime {

// The note as Merivane writes it: head, text and tail, no character of the text changed.
inline constexpr std::string_view kRtfNoteHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fswiss\\fprq2\\fcharset0 "
    "Arial;}} \\viewkind4\\uc1\\pard\\f0\\fs20 ";
inline constexpr std::string_view kRtfNoteTail = "\\par\\par}";
std::string RtfNote(std::string_view text);

// The text of a note of exactly that form; nothing for any other.
[[nodiscard]] std::optional<std::string_view> TextOfOwnRtfNote(std::string_view rtf);

// The readable text of rich text from anywhere: lines end with LF, line breaks at the end go,
// tables of fonts and the like are passed over. UTF-8.
struct PlainText {
  std::string text;
  bool brokeOff = false;  // a group isn't closed: the rest of the note is lost
};
PlainText TextOfRtf(std::string_view rtf);

}  // namespace merivane::runtime
