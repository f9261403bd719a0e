#include "reconcile/row_values.h"

namespace merivane::reconcile {

std::optional<std::int32_t> NumberIn(const Value& value) try {
  return value.IsNull() ? std::nullopt : std::optional(ToInt32(value));
} catch (const RunTimeError&) {
  return std::nullopt;
}

std::string NoteText(std::string text) {
  const bool quoted = text.starts_with('"');
  text.erase(0, text.find_first_not_of('"'));
  const auto isEnd = [&](char letter) {
    return letter == '\r' || letter == '\n' || (quoted && letter == '"');
  };
  while (!text.empty() && isEnd(text.back())) text.pop_back();
  return text;
}

bool IsSameNumber(const std::string& a, const std::string& b, double whenBlank) {
  const auto number = [&](const std::string& text) {
    return IsNumericText(text) ? ToDouble(text) : whenBlank;
  };
  return number(a) == number(b);
}

}  // namespace merivane::reconcile
