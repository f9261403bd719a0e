#include "pictures/chart.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "text_lines.h"
#include "time_axis.h"

namespace merivane::test {

using namespace pictures;

namespace {

using schedule::LinkKind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr DateTime kMonday{.year = 2026, .month = 11, .day = 30, .seconds = 8 * 3600};

TEST(TimeAxisTest, LabelsFitFromHoursToMillennia) {
  struct Row {
    DateTime finish;
    const char* label;  // of the second cell
    const char* above;  // the first label of the row above; empty: none
  };
  const Row rows[] = {{{2026, 11, 30, 9 * 3600}, "8:15", "Mon, Nov 30"},
                      {{2026, 11, 30, 17 * 3600}, "9:00", "Mon, Nov 30"},
                      {{2026, 12, 2, 8 * 3600}, "9:00", "Mon, Nov 30"},
                      {{2026, 12, 24, 0}, "1", "Dec 2026"},
                      {{2027, 5, 1, 0}, "7", "Dec 2026"},
                      {{2028, 5, 1, 0}, "Dec", "2026"},
                      {{2031, 5, 1, 0}, "Q1", "2026"},
                      {{2045, 5, 1, 0}, "2027", ""},
                      {{2090, 5, 1, 0}, "2030", ""},
                      {{9999, 5, 1, 0}, "2500", ""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(FormatDate(row.finish));
    const TimeAxis axis(kMonday, row.finish, 100);
    EXPECT_GE(axis.X(kMonday), axis.Left());
    EXPECT_GT(axis.X(row.finish), axis.X(kMonday));
    EXPECT_LE(axis.X(row.finish), axis.Right());
    std::vector<Text> lower, upper;
    for (const Shape& shape : axis.Draw(0, 100).shapes) {
      const auto* text = std::get_if<Text>(&shape);
      if (text == nullptr) continue;
      (text->at.y > TimeAxis::Height() / 2 ? lower : upper).push_back(*text);
    }
    ASSERT_GE(lower.size(), 2U);
    EXPECT_EQ(lower[1].text, row.label);
    EXPECT_EQ(upper.empty() ? "" : upper[0].text, row.above);
    for (std::size_t at = 1; at < lower.size(); ++at) {
      EXPECT_GT(lower[at].at.x - lower[at - 1].at.x, WidthOf(lower[at].text, Ink::kAxis));
    }
  }
}

schedule::PlanTask Task(std::int64_t uid, const char* name, double days, std::int64_t level = 2) {
  schedule::PlanTask task;
  task.uid = task.id = uid;
  task.name = name;
  task.level = level;
  task.duration = static_cast<schedule::Tenths>(days * schedule::kTenthsOfDay);
  return task;
}

long Count(const Picture& picture, Ink ink) {
  long count = 0;
  for (const Figure& figure : picture.figures) {
    if (figure.id.empty() && ink < Ink::kTaskLink) continue;  // the legend
    for (const Shape& shape : figure.shapes) {
      count += std::visit([&](const auto& part) { return part.ink == ink ? 1 : 0; }, shape);
    }
  }
  return count;
}

TEST(ChartTest, BarsTellKindResourcesAndDates) {
  schedule::Plan plan;
  plan.name = "Yard";
  plan.start = kMonday;
  plan.tasks = {Task(1, "Whole", 0, 1), Task(2, "Long", 3), Task(3, "Short", 0.5),
                Task(4, "End", 0)};
  plan.tasks[0].summary = true;
  for (std::size_t task : {1U, 2U, 3U}) plan.tasks[task].parent = 0;
  plan.links = {{.predecessor = 1, .successor = 3},
                {.predecessor = 2, .successor = 3},
                {.predecessor = 1, .successor = 2, .kind = LinkKind::kStartToStart},
                {.predecessor = 2, .successor = 3, .kind = LinkKind::kFinishToFinish}};
  const Picture chart = DrawChart(plan, MakeSchedule(plan), {"", "Ada, <Bob>", "", ""});
  EXPECT_EQ(Count(chart, Ink::kSummary), 1);
  EXPECT_EQ(Count(chart, Ink::kCritical), 1);
  EXPECT_EQ(Count(chart, Ink::kTask), 1);
  EXPECT_EQ(Count(chart, Ink::kMilestone), 1);
  EXPECT_EQ(Count(chart, Ink::kCriticalLink), 1);
  EXPECT_EQ(Count(chart, Ink::kTaskLink), 3);
  EXPECT_EQ(Count(chart, Ink::kCriticalArrow), 1);  // one head a link
  EXPECT_EQ(Count(chart, Ink::kTaskArrow), 3);
  EXPECT_THAT(chart.description, HasSubstr("Nov 30, 2026 to Dec 2, 2026, 4 tasks, 3 days"));
  std::vector<std::string> titles;
  for (const Figure& figure : chart.figures) {
    if (!figure.id.empty()) titles.push_back(figure.title);
    EXPECT_LE(figure.area.Right(), chart.width);
  }
  EXPECT_THAT(titles, ElementsAre(HasSubstr("Whole"),
                                  "Long\nNov 30, 2026 8:00 to Dec 2, 2026 17:00\n3 days, "
                                  "critical\nResources: Ada, <Bob>",
                                  HasSubstr("0.5 days, slack 2.5 days"), HasSubstr("Milestone")));
}

}  // namespace
}  // namespace merivane::test
