#include "runtime/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

class NumberScanner {
 public:
  explicit NumberScanner(std::string_view text) : text_(text) {}

  std::optional<std::string> Scan() {
    SkipBlanks();
    ScanSignAndCurrency();
    const bool whole = ScanDigits(Commas::kPassedOver);
    bool fraction = false;
    if (Take('.')) {
      plain_ += '.';
      fraction = ScanDigits(Commas::kRefused);
    }
    if (!whole && !fraction) return std::nullopt;
    if ((Take('E') || Take('e') || Take('D') || Take('d')) && !ScanExponent()) return std::nullopt;
    SkipBlanks();
    if (position_ != text_.size()) return std::nullopt;
    return plain_;
  }

 private:
  enum class Commas { kRefused, kPassedOver };  // behind the first digit

  bool Take(char wanted) {
    if (position_ == text_.size() || text_[position_] != wanted) return false;
    ++position_;
    return true;
  }

  void SkipBlanks() {
    while (Take(' ')) {
    }
  }

  bool TakeSign() {
    if (Take('-')) {
      plain_ += '-';
      return true;
    }
    return Take('+');
  }

  void ScanSignAndCurrency() {
    bool sign = TakeSign();
    SkipBlanks();
    if (Take('$')) SkipBlanks();
    if (!sign && TakeSign()) SkipBlanks();
  }

  // Commas may stand anywhere behind the first digit of the whole part.
  bool ScanDigits(Commas commas) {
    bool any = false;
    while (position_ < text_.size()) {
      if (IsDigit(text_[position_])) {
        plain_ += text_[position_];
        any = true;
      } else if (commas == Commas::kRefused || !any || text_[position_] != ',') {
        break;
      }
      ++position_;
    }
    return any;
  }

  bool ScanExponent() {
    plain_ += 'e';
    TakeSign();
    return ScanDigits(Commas::kRefused);
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::string plain_;
};

// Whether a plain form that doesn't fit a double is too large rather than too small.
bool IsTooLarge(const std::string& plain) {
  const std::size_t mark = std::min(plain.find('e'), plain.size());
  const std::size_t point = std::min(plain.find('.'), mark);
  const std::size_t first = plain.find_first_of("123456789");
  const long digits = static_cast<long>(point) - static_cast<long>(first);
  long exponent = 0;
  if (mark < plain.size()) {
    const bool negative = plain[mark + 1] == '-';
    const char* from = plain.data() + mark + (negative ? 2 : 1);
    const auto read = std::from_chars(from, plain.data() + plain.size(), exponent);
    if (read.ec != std::errc()) return !negative;
    if (negative) exponent = -exponent;
  }
  return exponent > -digits;
}

// The number in plain form (sign, digits, point, exponent behind 'e'), without blanks, grouping
// commas and currency sign; nothing where the text is no number.
std::optional<std::string> PlainNumber(std::string_view text) { return NumberScanner(text).Scan(); }

// Value of a plain form; error 6 "Overflow" beyond the range of a double.
double ReadPlainNumber(const std::string& plain) {
  double number = 0;
  const auto read = std::from_chars(plain.data(), plain.data() + plain.size(), number);
  if (read.ec == std::errc::result_out_of_range || std::isinf(number)) {
    if (IsTooLarge(plain)) throw RunTimeError(kOverflow);
    return 0;
  }
  return number;
}

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
    if (!IsDigit(character) && (character != '.' || point)) break;
    point = point || character == '.';
    digits = digits || IsDigit(character);
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
