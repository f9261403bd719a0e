#include "xml_values.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>

#include "runtime/code_page.h"

namespace merivane::mspdi {

namespace {

constexpr double kMostMinutes = 214748364;  // what the tables hold in tenths

std::string Stripped(const pugi::xml_node& node) {
  const std::string text = TextOf(node);
  constexpr const char* kSpace = " \t\r\n";
  const std::size_t from = text.find_first_not_of(kSpace);
  return from == std::string::npos ? std::string()
                                   : text.substr(from, text.find_last_not_of(kSpace) - from + 1);
}

// Takes a number and the letter behind it off the front; nothing where the text begins otherwise.
std::optional<double> TakePart(std::string_view& text, char letter) {
  double number = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  const auto length = static_cast<std::size_t>(end - text.data());
  if (error == std::errc::invalid_argument || length == text.size() || text[length] != letter) {
    return std::nullopt;
  }
  text.remove_prefix(length + 1);
  return error == std::errc() ? number : kMostMinutes + 1;
}

}  // namespace

void XmlValues::Refuse(const pugi::xml_node& node, const std::string& wanted) const {
  constexpr std::size_t kShown = 40;
  std::string found = FromUtf8(TextOf(node));
  if (found.size() > kShown) found = found.substr(0, kShown) + "...";
  file_.Refuse(node, "found '" + found + "' as " + FromUtf8(LocalName(node)) +
                         ", which has to be " + wanted + ".");
}

std::string XmlValues::Text(const pugi::xml_node& node) {
  const std::string text = TextOf(node);
  std::string converted = FromUtf8(text);
  lost_ +=
      static_cast<std::size_t>(std::ranges::count(converted, '?') - std::ranges::count(text, '?'));
  return converted;
}

std::string XmlValues::Lines(const pugi::xml_node& node) {
  std::string lines;
  for (const char character : Text(node)) {
    if (character == '\r') continue;
    if (character == '\n') lines += '\r';
    lines += character;
  }
  return lines;
}

std::int64_t XmlValues::Integer(const pugi::xml_node& node, std::int64_t least,
                                std::int64_t most) const {
  const std::string text = Stripped(node);
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  if (parsed.ec == std::errc() && parsed.ptr == end && number >= least && number <= most) {
    return number;
  }
  Refuse(node, "a whole number from " + std::to_string(least) + " to " + std::to_string(most));
}

bool XmlValues::Flag(const pugi::xml_node& node) const {
  const std::string text = Stripped(node);
  if (text == "1" || text == "true") return true;
  if (text == "0" || text == "false" || text.empty()) return false;
  Refuse(node, "0 or 1");
}

double XmlValues::Units(const pugi::xml_node& node) const {
  const std::string text = Stripped(node);
  double number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  constexpr double kMost = 2147483647;
  if (parsed.ec == std::errc() && parsed.ptr == end && number >= 0 && number <= kMost) {
    return number;
  }
  Refuse(node, "a number of units, 0 or more");
}

std::optional<double> XmlValues::MinutesIn(const pugi::xml_node& node) {
  const std::string text = Stripped(node);
  std::string_view rest = text;
  if (!rest.starts_with("PT")) return std::nullopt;
  rest.remove_prefix(2);
  const bool empty = rest.empty();
  const double hours = TakePart(rest, 'H').value_or(0);
  const double minutes = TakePart(rest, 'M').value_or(0);
  const double seconds = TakePart(rest, 'S').value_or(0);
  const double whole = hours * 60 + minutes + seconds / 60;
  if (empty || !rest.empty() || hours < 0 || minutes < 0 || seconds < 0) return std::nullopt;
  return whole;
}

double XmlValues::Minutes(const pugi::xml_node& node) const {
  const std::optional<double> minutes = MinutesIn(node);
  if (!minutes) Refuse(node, "a duration of 0 or more like PT16H0M0S");
  if (!(*minutes <= kMostMinutes)) Refuse(node, "no longer than 3,579,139 hours");
  return *minutes;
}

std::optional<DateTime> XmlDate(const std::string& text) {
  if (text.size() < 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto part = [&](std::size_t from, std::size_t length) {
    int number = 0;
    const char* end = text.data() + from + length;
    return std::from_chars(text.data() + from, end, number).ptr == end ? number : -1;
  };
  const DateTime date{.year = part(0, 4), .month = part(5, 2), .day = part(8, 2), .seconds = 0};
  if (date.year < 0 || date.month < 1 || date.day < 1) return std::nullopt;
  const std::chrono::year_month_day day{std::chrono::year{date.year},
                                        std::chrono::month{static_cast<unsigned>(date.month)},
                                        std::chrono::day{static_cast<unsigned>(date.day)}};
  return day.ok() ? std::optional(date) : std::nullopt;
}

std::optional<DateTime> XmlMoment(const std::string& text) {
  auto moment = XmlDate(text);
  int hour = 0, minute = 0, second = 0;
  constexpr std::size_t kTime = 10;  // where it begins
  if (!moment || text.size() < kTime ||
      std::sscanf(text.c_str() + kTime, "T%2d:%2d:%2d", &hour, &minute, &second) != 3 || hour < 0 ||
      hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) {
    return std::nullopt;
  }
  moment->seconds = hour * 3600 + minute * 60 + second;
  return moment;
}

}  // namespace merivane::mspdi
