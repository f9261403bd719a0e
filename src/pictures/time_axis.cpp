#include "time_axis.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "pictures/chart.h"
#include "text_lines.h"

namespace merivane::pictures {

namespace {

namespace chr = std::chrono;

constexpr double kMinutesOfDay = 1440;
constexpr double kUsualWidth = 860;
constexpr double kRow = 18;
constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array kWeekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

double MinutesOf(const DateTime& date) {
  const chr::sys_days day = chr::year(date.year) / chr::month(static_cast<unsigned>(date.month)) /
                            chr::day(static_cast<unsigned>(date.day));
  return static_cast<double>(day.time_since_epoch().count()) * kMinutesOfDay + date.seconds / 60.0;
}

double MinutesOf(chr::sys_days day) {
  return static_cast<double>(day.time_since_epoch().count()) * kMinutesOfDay;
}

chr::sys_days DayOf(double minutes) {
  return chr::sys_days(chr::days(static_cast<int>(std::floor(minutes / kMinutesOfDay))));
}

chr::sys_days FirstOfMonth(chr::year_month month) { return month / 1; }

std::string TimeText(double minutes) {
  const int whole = static_cast<int>(minutes);
  return std::to_string(whole / 60) + (whole % 60 < 10 ? ":0" : ":") + std::to_string(whole % 60);
}

std::string YearText(chr::year year) { return std::to_string(static_cast<int>(year)); }
const char* MonthText(chr::month month) { return kMonths[static_cast<unsigned>(month) - 1]; }
std::string DayText(chr::day day) { return std::to_string(static_cast<unsigned>(day)); }

}  // namespace

// A unit counts minutes, days, weeks, months or years; its labels stand below those of a coarser
// one.
struct TimeAxis::TimeUnit {
  enum class Of { kMinute, kDay, kWeek, kMonth, kYear } of;
  int count;
  double leastWidth;
  int coarse;  // steps to the unit of the row above; 0: none

  double Begin(double minutes) const;
  double Next(double begin) const;
  std::string Label(double begin) const;
  std::string CoarseLabel(double begin) const;
};

const TimeAxis::TimeUnit TimeAxis::kUnits[] = {
    {TimeUnit::Of::kMinute, 15, 34, 4},  {TimeUnit::Of::kMinute, 60, 34, 3},
    {TimeUnit::Of::kMinute, 180, 34, 2}, {TimeUnit::Of::kMinute, 360, 34, 1},
    {TimeUnit::Of::kDay, 1, 20, 2},      {TimeUnit::Of::kWeek, 1, 24, 1},
    {TimeUnit::Of::kMonth, 1, 30, 2},    {TimeUnit::Of::kMonth, 3, 30, 1},
    {TimeUnit::Of::kYear, 1, 38, 0},     {TimeUnit::Of::kYear, 5, 38, 0},
    {TimeUnit::Of::kYear, 25, 38, 0},    {TimeUnit::Of::kYear, 100, 38, 0},
    {TimeUnit::Of::kYear, 500, 38, 0}};

double TimeAxis::TimeUnit::Begin(double minutes) const {
  const chr::sys_days day = DayOf(minutes);
  const chr::year_month_day date(day);
  const auto year = static_cast<int>(date.year());
  const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
  switch (of) {
    case Of::kMinute:
      return std::floor(minutes / count) * count;
    case Of::kDay:
      return MinutesOf(day);
    case Of::kWeek:
      return MinutesOf(day - (chr::weekday(day) - chr::Monday));
    case Of::kMonth:
      return MinutesOf(FirstOfMonth(
          date.year() / chr::month(static_cast<unsigned>((month - 1) / count * count + 1))));
    case Of::kYear:
      break;
  }
  return MinutesOf(FirstOfMonth(chr::year(year / count * count) / chr::January));
}

double TimeAxis::TimeUnit::Next(double begin) const {
  const chr::year_month_day date(DayOf(begin));
  switch (of) {
    case Of::kMinute:
      return begin + count;
    case Of::kDay:
      return begin + kMinutesOfDay;
    case Of::kWeek:
      return begin + 7 * kMinutesOfDay;
    case Of::kMonth:
      return MinutesOf(FirstOfMonth(date.year() / date.month() + chr::months(count)));
    case Of::kYear:
      break;
  }
  return MinutesOf(FirstOfMonth(date.year() / chr::January + chr::years(count)));
}

std::string TimeAxis::TimeUnit::Label(double begin) const {
  const chr::year_month_day date(DayOf(begin));
  switch (of) {
    case Of::kMinute:
      return TimeText(std::fmod(begin, kMinutesOfDay));
    case Of::kDay:
    case Of::kWeek:
      return DayText(date.day());
    case Of::kMonth:
      return count == 1 ? MonthText(date.month())
                        : "Q" + std::to_string((static_cast<unsigned>(date.month()) + 2) / 3);
    case Of::kYear:
      break;
  }
  return YearText(date.year());
}

std::string TimeAxis::TimeUnit::CoarseLabel(double begin) const {
  const chr::year_month_day date(DayOf(begin));
  if (of == Of::kDay) {
    return std::string(kWeekdays[chr::weekday(DayOf(begin)).c_encoding()]) + ", " +
           MonthText(date.month()) + " " + DayText(date.day());
  }
  return (of == Of::kMonth ? MonthText(date.month()) + std::string(" ") : std::string()) +
         YearText(date.year());
}

TimeAxis::TimeAxis(const DateTime& start, const DateTime& finish, double left) : left_(left) {
  for (const TimeUnit& unit : kUnits) {
    unit_ = &unit;
    from_ = unit.Begin(MinutesOf(start));
    const double last = std::max(MinutesOf(finish), from_ + 1);
    double cells = 0;
    for (to_ = from_; to_ < last && cells * unit.leastWidth <= kUsualWidth; ++cells) {
      to_ = unit.Next(to_);
    }
    if (to_ < last) continue;
    constexpr double kWidestCell = 90;
    width_ = std::min(kUsualWidth, cells * kWidestCell);
    return;
  }
  to_ = std::max(to_, MinutesOf(finish));
  width_ = kUsualWidth;
}

double TimeAxis::At(double minutes) const {
  return left_ + (minutes - from_) / (to_ - from_) * width_;
}

double TimeAxis::X(const DateTime& date) const { return At(MinutesOf(date)); }

double TimeAxis::Height() { return 2 * kRow; }

std::vector<TimeAxis::Tick> TimeAxis::Ticks(const TimeUnit& unit, Labels labels) const {
  std::vector<Tick> ticks;
  for (double at = unit.Begin(from_); at < to_; at = unit.Next(at)) {
    ticks.push_back(
        {std::max(at, from_), labels == Labels::kCoarse ? unit.CoarseLabel(at) : unit.Label(at)});
  }
  return ticks;
}

void TimeAxis::AddRow(const std::vector<Tick>& ticks, double top, double bottom, Anchor anchor,
                      Figure& figure) const {
  constexpr double kInset = 4;
  for (std::size_t at = 0; at < ticks.size(); ++at) {
    const double left = At(ticks[at].minutes);
    const double right = At(at + 1 < ticks.size() ? ticks[at + 1].minutes : to_);
    figure.shapes.push_back(Path{.ink = Ink::kGrid, .points = {{left, top}, {left, bottom}}});
    if (WidthOf(ticks[at].label, Ink::kAxis) > right - left) continue;
    const double base = top + kRow - 5;
    figure.shapes.push_back(
        anchor == Anchor::kMiddle
            ? Text{Ink::kAxis, {(left + right) / 2, base}, ticks[at].label, anchor}
            : Text{Ink::kAxis, {left + kInset, base}, ticks[at].label});
  }
}

bool TimeAxis::ShowsWeekends() const {
  constexpr double kLeastDay = 4;
  return At(from_ + kMinutesOfDay) - left_ >= kLeastDay;
}

void TimeAxis::AddWeekends(double top, double bottom, Figure& figure) const {
  if (!ShowsWeekends()) return;
  for (double day = std::floor(from_ / kMinutesOfDay) * kMinutesOfDay; day < to_;
       day += kMinutesOfDay) {
    const chr::weekday weekday(DayOf(day));
    if (weekday != chr::Saturday && weekday != chr::Sunday) continue;
    const double left = At(std::max(day, from_));
    const double right = At(std::min(day + kMinutesOfDay, to_));
    figure.shapes.push_back(Box{Ink::kWeekend, {left, top, right - left, bottom - top}});
  }
}

Figure TimeAxis::Draw(double top, double bottom) const {
  Figure figure;
  AddWeekends(top + 2 * kRow, bottom, figure);
  if (unit_->coarse > 0)
    AddRow(Ticks(unit_[unit_->coarse], Labels::kCoarse), top, bottom, Anchor::kStart, figure);
  AddRow(Ticks(*unit_, Labels::kFine), top + kRow, bottom,
         unit_->of == TimeUnit::Of::kMinute ? Anchor::kStart : Anchor::kMiddle, figure);
  if (unit_->coarse > 0) {
    figure.shapes.push_back(Path{.ink = Ink::kGrid, .points = {{left_, top}, {Right(), top}}});
  }
  for (const double y : {top + kRow, top + 2 * kRow, bottom}) {
    figure.shapes.push_back(Path{.ink = Ink::kGrid, .points = {{left_, y}, {Right(), y}}});
  }
  figure.shapes.push_back(
      Path{.ink = Ink::kGrid,
           .points = {{Right(), unit_->coarse > 0 ? top : top + kRow}, {Right(), bottom}}});
  return figure;
}

std::string DateText(const DateTime& date) {
  return std::string(kMonths[static_cast<std::size_t>(date.month - 1)]) + ' ' +
         std::to_string(date.day) + ", " + std::to_string(date.year);
}

std::string DateAndTimeText(const DateTime& date) {
  return DateText(date) + ' ' + TimeText(date.seconds / 60.0);
}

}  // namespace merivane::pictures
