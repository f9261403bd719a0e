#include <cmath>

#include "runtime/conversions.h"
#include "schedule/plan.h"

namespace merivane::schedule {

namespace {

constexpr std::int64_t kEstimated = 32;
constexpr std::int64_t kPercent = 19;
constexpr double kWorkedMinutesOfDay = 480;
constexpr double kElapsedMinutesOfDay = 24 * 60;

std::int64_t WithoutEstimate(std::int64_t format) { return format & ~kEstimated; }

bool IsEven(std::int64_t number) { return number % 2 == 0; }

struct TimeUnit {
  std::string_view text;
  std::int64_t format;  // of working time
  double minutes;       // 0: days and a count of them
  double days;
  double elapsedDays;
};

// "mo" stands in front of "m", so that it is found first.
constexpr TimeUnit kUnits[] = {
    {"mo", 11, 0, 20, 30}, {"m", 3, 1, 0, 0}, {"h", 5, 60, 0, 0},
    {"d", 7, 0, 1, 1},     {"w", 9, 0, 5, 7}, {"%", kPercent, 0, 0, 0},
};

double TenthsOf(const TimeUnit& unit, bool elapsed, double minutesPerDay) {
  if (unit.format == kPercent) return 1;
  constexpr auto kTenths = static_cast<double>(kTenthsOfMinute);
  if (unit.minutes > 0) return unit.minutes * kTenths;
  return kTenths * (elapsed ? unit.elapsedDays * kElapsedMinutesOfDay : unit.days * minutesPerDay);
}

const TimeUnit& UnitOf(std::int64_t format) {
  const std::int64_t working = WithoutEstimate(format) - (IsEven(format) ? 1 : 0);
  for (const TimeUnit& unit : kUnits) {
    if (unit.format == working) return unit;
  }
  return UnitOf(kFormatDays);
}

}  // namespace

bool Lag::IsElapsed() const { return IsEven(WithoutEstimate(format)); }

bool Lag::IsPercentage() const { return UnitOf(format).format == kPercent; }

std::string LagText(const Lag& lag, double minutesPerDay) {
  if (lag.amount == 0) return {};
  const TimeUnit& unit = UnitOf(lag.format);
  const double count =
      static_cast<double>(lag.amount) / TenthsOf(unit, lag.IsElapsed(), minutesPerDay);
  return (lag.amount > 0 ? "+" : "") + TextOfReal(count) + (lag.IsElapsed() ? "e" : "") +
         std::string(unit.text);
}

Lag ParseLag(std::string_view text) {
  const std::size_t end = text.find_first_not_of("+-0123456789.");
  if (text.empty() || end == std::string_view::npos || !IsNumericText(text.substr(0, end))) {
    return {};
  }
  const double count = ToDouble(text.substr(0, end));
  std::string_view rest = text.substr(end);
  const bool elapsed = rest.starts_with('e');
  if (elapsed) rest.remove_prefix(1);
  for (const TimeUnit& unit : kUnits) {
    if (!rest.starts_with(unit.text)) continue;
    const double amount = std::round(count * TenthsOf(unit, elapsed, kWorkedMinutesOfDay));
    constexpr double kMost = 2147483647;
    if (std::abs(amount) > kMost) return {};
    return {static_cast<Tenths>(amount), unit.format + (elapsed ? 1 : 0)};
  }
  return {};
}

}  // namespace merivane::schedule
