#include "runtime/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "number_text.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

// Rounded half to even whatever rounding mode is set.
double RoundHalfToEven(double number) {
  const double below = std::floor(number);
  const double part = number - below;
  if (part != 0.5) return part < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

template <typename Whole>
Whole ToWhole(const Value& value) {
  const double number = RoundHalfToEven(ToDouble(value));
  const bool fits = number >= static_cast<double>(std::numeric_limits<Whole>::min()) &&
                    number <= static_cast<double>(std::numeric_limits<Whole>::max());
  if (!fits) throw RunTimeError(kOverflow);
  return static_cast<Whole>(number);
}

bool IsNumber(const Value& value) { return value.IsInteger() || value.IsReal(); }

bool NumberEqualsText(const Value& number, const Value& text) {
  const auto plain = PlainNumber(text.Text());
  return plain && ToDouble(number) == ReadPlainNumber(*plain);
}

struct Decimal {
  bool negative = false;
  std::string digits;  // 15 significant digits, the point stands behind the first
  int exponent = 0;
};

Decimal FifteenDigits(double number) {
  std::array<char, 40> buffer{};
  const auto printed = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                     std::fabs(number), std::chars_format::scientific, 14);
  const std::string text(buffer.data(), printed.ptr);
  const std::size_t mark = text.find('e');
  return {number < 0, text.substr(0, 1) + text.substr(2, mark - 2),
          std::atoi(text.c_str() + mark + 1)};
}

// Adds one to the last digit of a row of digits; may grow it by one in front.
void CountUp(std::string& digits) {
  std::size_t position = digits.size();
  while (position > 0 && digits[position - 1] == '9') digits[--position] = '0';
  if (position == 0) {
    digits.insert(digits.begin(), '1');
  } else {
    ++digits[position - 1];
  }
}

}  // namespace

std::int16_t ToInt16(const Value& value) { return ToWhole<std::int16_t>(value); }

std::int32_t ToInt32(const Value& value) { return ToWhole<std::int32_t>(value); }

double ToDouble(const Value& value) {
  if (value.IsNull()) throw RunTimeError(kInvalidUseOfNull);
  if (value.IsInteger()) return static_cast<double>(value.Integer());
  if (value.IsReal()) return value.Real();
  const auto plain = value.IsText() ? PlainNumber(value.Text()) : std::nullopt;
  if (!plain) throw RunTimeError(kTypeMismatch);
  return ReadPlainNumber(*plain);
}

std::string ToText(const Value& value) {
  if (value.IsNull()) throw RunTimeError(kInvalidUseOfNull);
  return Joined(value);
}

std::string Joined(const Value& value) {
  if (value.IsNull()) return {};
  if (value.IsInteger()) return std::to_string(value.Integer());
  if (value.IsReal()) return TextOfReal(value.Real());
  if (value.IsText()) return value.Text();
  return {value.GetBytes().begin(), value.GetBytes().end()};
}

std::string TextOfReal(double number) {
  if (number == 0) return "0";
  std::array<char, 40> buffer{};
  const auto printed = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                     std::chars_format::general, 15);
  std::string text(buffer.data(), printed.ptr);
  if (const std::size_t mark = text.find('e'); mark != std::string::npos) text[mark] = 'E';
  return text;
}

bool IsNumeric(const Value& value) {
  return IsNumber(value) || (value.IsText() && IsNumericText(value.Text()));
}

bool IsNumericText(std::string_view text) { return PlainNumber(text).has_value(); }

double LeadingNumber(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  std::size_t position = std::min(text.find_first_not_of(' '), text.size());
  std::string plain;
  if (position < text.size() && (text[position] == '-' || text[position] == '+')) {
    if (text[position] == '-') plain += '-';
    ++position;
  }
  bool digits = false;
  bool point = false;
  for (; position < text.size(); ++position) {
    const char character = text[position];
    if (!isDigit(character) && (character != '.' || point)) break;
    point = point || character == '.';
    digits = digits || isDigit(character);
    plain += character;
  }
  return digits ? ReadPlainNumber(plain) : 0;
}

std::string FixedTwo(double number) {
  if (!std::isfinite(number)) return TextOfReal(number);
  const Decimal decimal = FifteenDigits(number);
  const int kept = decimal.exponent + 1 + 2;  // digits up to the second behind the point
  std::string digits = "0";
  if (kept >= 0) digits += decimal.digits.substr(0, static_cast<std::size_t>(kept));
  const auto size = static_cast<int>(decimal.digits.size());
  if (kept > size) digits.append(static_cast<std::size_t>(kept - size), '0');
  if (kept >= 0 && kept < size && decimal.digits[static_cast<std::size_t>(kept)] >= '5') {
    CountUp(digits);
  }
  const std::size_t first = digits.find_first_not_of('0');
  digits.erase(0, std::min(first, digits.size()));
  if (digits.empty()) return "0.00";
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  return (decimal.negative ? "-" : "") + digits.substr(0, digits.size() - 2) + "." +
         digits.substr(digits.size() - 2);
}

std::int16_t AddInt16(std::int16_t a, int b) {
  return ToInt16(static_cast<std::int64_t>(a) + static_cast<std::int64_t>(b));
}

bool Equal(const Value& a, const Value& b) {
  if (a.IsNull() || b.IsNull()) return false;
  if (a.IsInteger() && b.IsInteger()) return a.Integer() == b.Integer();
  if (IsNumber(a) && IsNumber(b)) return ToDouble(a) == ToDouble(b);
  if (IsNumber(a) && b.IsText()) return NumberEqualsText(a, b);
  if (a.IsText() && IsNumber(b)) return NumberEqualsText(b, a);
  return a == b;
}

bool IsBlank(const Value& value) {
  return value.IsNull() || (value.IsText() && value.Text().empty());
}

}  // namespace merivane::runtime
