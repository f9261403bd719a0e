#include "number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
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

}  // namespace

std::optional<std::string> PlainNumber(std::string_view text) { return NumberScanner(text).Scan(); }

double ReadPlainNumber(const std::string& plain) {
  double number = 0;
  const auto read = std::from_chars(plain.data(), plain.data() + plain.size(), number);
  if (read.ec == std::errc::result_out_of_range || std::isinf(number)) {
    if (IsTooLarge(plain)) throw RunTimeError(kOverflow);
    return 0;
  }
  return number;
}

}  // namespace merivane::runtime
