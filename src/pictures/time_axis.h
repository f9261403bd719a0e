// The time axis of a chart, in minutes, days, weeks, months, quarters or years.
#pragma once

#include <string>
#include <vector>

#include "pictures/picture.h"
#include "runtime/dates.h"

namespace merivane::pictures {

using namespace runtime;

class TimeAxis {
 public:
  // From the unit in which `start` falls to the one in which `finish` falls, the finest unit whose
  // labels find room; `left` is its beginning.
  TimeAxis(const DateTime& start, const DateTime& finish, double left);

  double X(const DateTime& date) const;
  double Left() const { return left_; }
  double Right() const { return left_ + width_; }
  static double Height();  // of the two rows of labels
  bool ShowsWeekends() const;

  // The labels in the rows from `top`, grid lines down to `bottom`, weekends where days are wide.
  Figure Draw(double top, double bottom) const;

 private:
  struct TimeUnit;
  enum class Labels { kFine, kCoarse };
  struct Tick {
    double minutes;
    std::string label;
  };
  static const TimeUnit kUnits[];
  std::vector<Tick> Ticks(const TimeUnit& unit, Labels labels) const;
  void AddRow(const std::vector<Tick>& ticks, double top, double bottom, Anchor anchor,
              Figure& figure) const;
  void AddWeekends(double top, double bottom, Figure& figure) const;
  double At(double minutes) const;

  double left_;
  double width_ = 0;
  double from_ = 0;  // minutes
  double to_ = 0;
  const TimeUnit* unit_ = nullptr;
};

}  // namespace merivane::pictures
