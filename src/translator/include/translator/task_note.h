// The note of a task: a glossary in RTF.
#pragma once

#include <cstddef>
#include <string_view>

namespace merivane::translator {

inline constexpr std::size_t kMostNoteBytes = 20000;
inline constexpr std::string_view kNoteHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fswiss\\fprq2\\fcharset0 "
    "Arial;}} \\viewkind4\\uc1\\pard\\f0\\fs20 ";
inline constexpr std::string_view kNoteEnd = "\\par\\par}";

// Characters of the longest glossary that a note takes; a longer one ends the translation.
inline constexpr std::size_t kLongestGlossary = kMostNoteBytes - kNoteHead.size() - kNoteEnd.size();

}  // namespace merivane::translator
