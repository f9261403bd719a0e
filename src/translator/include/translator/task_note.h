// The note of a task: a glossary in RTF.
#pragma once

#include <cstddef>

#include "runtime/rtf_notes.h"

namespace merivane::translator {

using namespace runtime;

inline constexpr std::size_t kMostNoteBytes = 20000;

// Characters of the longest glossary that a note takes; a longer one ends the translation.
inline constexpr std::size_t kLongestGlossary =
    kMostNoteBytes - runtime::kRtfNoteHead.size() - runtime::kRtfNoteTail.size();

}  // namespace merivane::translator
