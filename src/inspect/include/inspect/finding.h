// One thing that a model text should be asked about before it is translated, and its words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "runtime/text.h"

namespace merivane::inspect {

enum class Severity {
  kError,    // ends the translation, or something of the model is lost
  kWarning,  // translates, but otherwise than one would think
  kNote,     // stands in many models, and is seldom meant otherwise
};

// Texts are Windows-1252.
struct ElementName {
  std::string kind;                    // "process", "unit", ...; empty: the text as a whole
  std::optional<std::int32_t> number;  // as the text counts it
  std::string name;                    // empty for an element without one
};

struct Finding {
  Severity severity = Severity::kError;
  std::size_t line = 0;  // of a text, from 1
  ElementName element;
  std::string sentence;    // what was found
  std::string advice;      // what to do about it
  std::string group = {};  // notes of one group, "values taken over", can be told as one
  std::optional<std::int32_t> planRow = {};  // of a plan: of a task, or of a resource
};

// "unit 3 'Sand the hull'"; empty for the text as a whole.
std::string Described(const ElementName& element);

// A text, of a box mostly, for a list where each entry is one line: with one blank in the place of
// line ends and of several blanks, and none around it.
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

// Words of a text that were written nearly as they should be: another word, from which this one
// differs by its blanks, by upper and lower case and by at most two characters (one in a short
// word).
bool IsNearMiss(std::string_view word, std::string_view meant);

// " Did you mean 'Shared Resource'?" for a word that nearly is one of these; empty for any other,
// and for one of them.
std::string Suggestion(std::string_view word, std::span<const std::string_view> known);

}  // namespace merivane::inspect
