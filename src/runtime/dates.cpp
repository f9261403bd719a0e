#include "runtime/dates.h"

#include <array>
#include <cstddef>

#include "runtime/text.h"

namespace merivane::runtime {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
    "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }
bool IsLetter(char character) { return character >= 'A' && character <= 'Z'; }

// A full English month name or its first three letters; 0 for another word.
int MonthOf(std::string_view word) {
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (word == kMonths[i] || word == kMonths[i].substr(0, 3)) return static_cast<int>(i) + 1;
  }
  return 0;
}

int DaysIn(int month, int year) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

std::optional<DateTime> ValidDay(int year, int month, int day) {
  if (year < 30) {
    year += 2000;
  } else if (year < 100) {
    year += 1900;
  }
  if (year > 9999 || month < 1 || month > 12) return std::nullopt;
  if (day < 1 || day > DaysIn(month, year)) return std::nullopt;
  return DateTime{year, month, day, 0};
}

// A date's three parts; `month` is the index of the one that was a name, -1 for three numbers.
struct Parts {
  std::array<int, 3> values{};
  int name = -1;
};

std::optional<DateTime> DayOf(const Parts& parts) {
  const auto [a, b, c] = parts.values;
  if (parts.name >= 0) {
    const int month = parts.values[static_cast<std::size_t>(parts.name)];
    const int first = parts.name == 0 ? b : a;
    const int second = parts.name == 2 ? b : c;
    const auto day = ValidDay(second, month, first);
    return day ? day : ValidDay(first, month, second);
  }
  if (auto day = ValidDay(c, a, b)) return day;
  if (auto day = ValidDay(c, b, a)) return day;
  return ValidDay(a, b, c);
}

class DateScanner {
 public:
  explicit DateScanner(std::string_view text) : text_(UpperCase(Trim(text))) {}

  std::optional<DateTime> Scan() {
    Parts parts;
    for (int i = 0; i < 3; ++i) {
      if ((i > 0 && !TakeSeparator()) || !TakePart(parts, i)) return std::nullopt;
    }
    auto date = DayOf(parts);
    if (!date || AtEnd()) return date;
    const auto time = TakeTime();
    if (!time || !AtEnd()) return std::nullopt;
    date->seconds = *time;
    return date;
  }

 private:
  bool AtEnd() const { return position_ == text_.size(); }

  bool Take(char wanted) {
    if (AtEnd() || text_[position_] != wanted) return false;
    ++position_;
    return true;
  }

  bool TakeBlanks() {
    const std::size_t from = position_;
    while (Take(' ')) {
    }
    return position_ > from;
  }

  // Blanks, or one '/', '-' or comma with or without blanks around.
  bool TakeSeparator() {
    const bool blanks = TakeBlanks();
    const bool mark = Take('/') || Take('-') || (named_ && Take(','));
    if (mark) TakeBlanks();
    return blanks || mark;
  }

  std::optional<int> TakeNumber(std::size_t digits) {
    const std::size_t from = position_;
    int number = 0;
    while (!AtEnd() && IsDigit(text_[position_]) && position_ - from < digits) {
      number = number * 10 + (text_[position_++] - '0');
    }
    if (position_ == from || (!AtEnd() && IsDigit(text_[position_]))) return std::nullopt;
    return number;
  }

  std::string TakeWord() {
    const std::size_t from = position_;
    while (!AtEnd() && IsLetter(text_[position_])) ++position_;
    return text_.substr(from, position_ - from);
  }

  bool TakePart(Parts& parts, int index) {
    auto& value = parts.values[static_cast<std::size_t>(index)];
    if (!AtEnd() && IsLetter(text_[position_])) {
      value = MonthOf(TakeWord());
      if (value == 0 || named_) return false;
      named_ = true;
      parts.name = index;
      return true;
    }
    const auto number = TakeNumber(4);
    value = number.value_or(0);
    return number.has_value();
  }

  std::optional<int> TakeTime() {
    if (!TakeBlanks()) return std::nullopt;
    const auto hour = TakeNumber(2);
    if (!hour || !Take(':')) return std::nullopt;
    const auto minute = TakeNumber(2);
    std::optional<int> second = 0;
    if (Take(':')) second = TakeNumber(2);
    if (!minute || !second || *minute > 59 || *second > 59) return std::nullopt;
    const auto fullHour = TakeHalfOfDay(*hour);
    if (!fullHour) return std::nullopt;
    return *fullHour * 3600 + *minute * 60 + *second;
  }

  std::optional<int> TakeHalfOfDay(int hour) {
    TakeBlanks();
    const std::string word = TakeWord();
    if (word.empty()) return hour <= 23 ? std::optional(hour) : std::nullopt;
    if ((word != "AM" && word != "PM") || hour > 12) return std::nullopt;
    return hour % 12 + (word == "PM" ? 12 : 0);
  }

  std::string text_;
  std::size_t position_ = 0;
  bool named_ = false;
};

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

}  // namespace

std::optional<DateTime> ParseDate(std::string_view text) { return DateScanner(text).Scan(); }

bool IsDate(std::string_view text) { return ParseDate(text).has_value(); }

std::string FormatDate(const DateTime& date) {
  std::string text =
      std::to_string(date.month) + "/" + std::to_string(date.day) + "/" + std::to_string(date.year);
  if (date.seconds == 0) return text;
  const int hour = date.seconds / 3600;
  text += " " + std::to_string(hour % 12 == 0 ? 12 : hour % 12);
  text += ":" + TwoDigits(date.seconds / 60 % 60) + ":" + TwoDigits(date.seconds % 60);
  return text + (hour < 12 ? " AM" : " PM");
}

}  // namespace merivane::runtime
