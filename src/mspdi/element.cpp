#include "element.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "runtime/code_page.h"
#include "runtime/conversions.h"

namespace merivane::mspdi {

namespace {

constexpr std::int64_t kSecondsOfTenth = 6;
constexpr double kThousandthsOfSecond = 1000.0 / 60;  // of a minute

bool Forbidden(char character) {
  return static_cast<unsigned char>(character) < ' ' && character != '\t' && character != '\n';
}

std::string Allowed(std::string_view text) {
  std::string kept;
  kept.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {
      if (i + 1 == text.size() || text[i + 1] != '\n') kept += '\n';
    } else if (!Forbidden(text[i])) {
      kept += text[i];
    }
  }
  return kept;
}

}  // namespace

void Element::Text(const char* name, std::string_view text, std::size_t most) {
  const std::string allowed = ToUtf8(Allowed(text.substr(0, most)));
  if (!allowed.empty()) Add(name, allowed.c_str());
}

void Element::Integer(const char* name, std::int64_t number) {
  std::array<char, 24> text{};
  *std::to_chars(text.data(), text.data() + text.size() - 1, number).ptr = '\0';
  Add(name, text.data());
}

void Element::Decimal(const char* name, double number) {
  std::array<char, 400> text{};
  *std::to_chars(text.data(), text.data() + text.size() - 1, number, std::chars_format::fixed).ptr =
      '\0';
  Add(name, text.data());
}

void Element::Date(const char* name, const DateTime& date) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d", date.year, date.month,
                date.day, date.seconds / 3600, date.seconds / 60 % 60, date.seconds % 60);
  Add(name, text.data());
}

void Element::Duration(const char* name, schedule::Tenths duration) {
  Seconds(name, duration * kSecondsOfTenth);
}

void Element::Seconds(const char* name, std::int64_t seconds) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "PT%lldH%dM%dS", static_cast<long long>(seconds / 3600),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  Add(name, text.data());
}

bool Element::Stored(const char* name, Kind kind, const Value& value) {
  if (value.IsNull() || value.IsBytes()) return false;
  if (kind == Kind::kText) {
    Text(name, Joined(value), kLongestText);
    return true;
  }
  if (kind == Kind::kDate) {
    const auto date = ParseDate(Joined(value));
    if (date) Date(name, *date);
    return date.has_value();
  }
  if (!IsNumeric(value)) return false;
  const double number = ToDouble(value);
  constexpr double kMost = 9e15;  // whole numbers up to here are exact
  if (!(std::abs(number) <= kMost)) return false;
  if (kind == Kind::kDecimal) {
    Decimal(name, number);
    return true;
  }
  if (kind == Kind::kFlag) {
    Flag(name, number != 0);
    return true;
  }
  if (kind == Kind::kInteger) {
    Integer(name, std::llround(number));
    return true;
  }
  if (number < 0) return false;
  Seconds(name, kind == Kind::kWork ? std::llround(number / kThousandthsOfSecond)
                                    : std::llround(number) * kSecondsOfTenth);
  return true;
}

}  // namespace merivane::mspdi
