#include "mpx/mpx_durations.h"

#include <algorithm>
#include <iterator>

#include "mpx/mpx_format.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::mpx {

namespace {

constexpr double kMinutesPerDay = 480;
constexpr double kHoursPerDay = 8;
constexpr double kDaysPerWeek = 5;
constexpr std::size_t kJapaneseDateLength = 8;

std::string Days(std::string_view number, char unit) {
  if (!IsNumericText(number)) return "1.00";
  const double count = ToDouble(number);
  switch (unit) {
    case 'm':
      return FixedTwo(count / kMinutesPerDay);
    case 'h':
      return FixedTwo(count / kHoursPerDay);
    case 'w':
      return FixedTwo(count * kDaysPerWeek);
    default:
      return FixedTwo(count);
  }
}

char LetterOf(std::int16_t defaultUnits) {
  switch (defaultUnits) {
    case 0:
      return 'm';
    case 1:
      return 'h';
    case 3:
      return 'w';
    default:
      return 'd';
  }
}

// The first of the letters that stands anywhere in the text.
char LetterIn(std::string_view text) {
  for (const char letter : {'m', 'h', 'w'}) {
    if (text.find(letter) != std::string_view::npos) return letter;
  }
  return 'd';
}

}  // namespace

std::string ConvertDuration(std::string_view text, std::int16_t defaultUnits) {
  if (IsNumericText(text)) return Days(text, LetterOf(defaultUnits));
  return Days(Left(text, text.empty() ? 0 : std::ssize(text) - 1), LetterIn(text));
}

std::string ExtractStartDate(std::string_view text, std::int32_t codePage) {
  const std::size_t digit = text.find_first_of("0123456789");
  if (digit == std::string_view::npos || digit + 1 == text.size()) return {};
  std::string date(text.substr(digit));
  if (codePage == kJapaneseCodePage) date.resize(std::min(date.size(), kJapaneseDateLength));
  return date;
}

}  // namespace merivane::mpx
