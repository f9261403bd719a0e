// Reading of numbers as a user writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace merivane::runtime {

// The number in plain form (sign, digits, point, exponent behind 'e'), without blanks, grouping
// commas and currency sign; nothing where the text is no number.
[[nodiscard]] std::optional<std::string> PlainNumber(std::string_view text);

// Value of a plain form; error 6 "Overflow" beyond the range of a double.
double ReadPlainNumber(const std::string& plain);

}  // namespace merivane::runtime
