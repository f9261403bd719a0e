// One thing that a model text should be asked about before it is translated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

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

}  // namespace merivane::inspect
