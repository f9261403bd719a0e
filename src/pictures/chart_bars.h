// The bars of a chart and the links between them.
#pragma once

#include "pictures/picture.h"
#include "schedule/plan.h"

namespace merivane::pictures {

using namespace schedule;

enum class BarKind { kTask, kCritical, kSummary, kMilestone, kBefore, kOverload };

// Where a bar lies; a milestone has no width.
struct Bar {
  BarKind kind = BarKind::kTask;
  double start = 0;
  double finish = 0;
  double y = 0;  // its middle

  double Left() const;  // of what is drawn
  double Right() const;
};

void AddBar(const Bar& bar, Figure& figure);

Figure DrawTaskLink(const Bar& predecessor, const Bar& successor, schedule::LinkKind kind,
                    bool critical);

}  // namespace merivane::pictures
