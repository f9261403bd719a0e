// Durations and dates of MPX fields.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace merivane::mpx {

// Days of 8 hours, five to a week, as text with two decimals. A number alone counts in
// `defaultUnits` (0 minutes, 1 hours, 2 or any other days, 3 weeks); otherwise the text ends with
// the small letter of its unit. What isn't understood (elapsed times among it) is "1.00".
std::string ConvertDuration(std::string_view text, std::int16_t defaultUnits);

// The text from its first digit on, empty where no digit stands before the last character. With
// code page 932 no more than eight characters.
std::string ExtractStartDate(std::string_view text, std::int32_t codePage);

}  // namespace merivane::mpx
