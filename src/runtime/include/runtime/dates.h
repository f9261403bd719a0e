// Dates as the run time reads and prints them (M/D/YYYY, English month names).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace merivane::runtime {

struct DateTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int seconds = 0;  // since midnight
  friend bool operator==(const DateTime&, const DateTime&) = default;
};

// Three numbers between '/', '-' or blanks in an order that gives a valid day (M/D/Y, then D/M/Y,
// then Y/M/D are tried; years 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999), or an English
// month name with day and year; each with or without a time (H:MM[:SS] [AM|PM]) behind.
[[nodiscard]] std::optional<DateTime> ParseDate(std::string_view text);
bool IsDate(std::string_view text);

// "M/D/YYYY", with " H:MM:SS AM/PM" behind when there is a time.
std::string FormatDate(const DateTime& date);

}  // namespace merivane::runtime
