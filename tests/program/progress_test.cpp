#include "program/progress.h"

#include <gtest/gtest.h>

#include "scripted_desktop.h"

namespace merivane::test {

using namespace program;

namespace {

// A clock that each row takes forward.
class RowDesktop : public ScriptedDesktop {
 public:
  std::int64_t now = 0;
  std::int64_t Ticks() const override { return now; }
};

TEST(Progress, IsToldTenTimesASecondAndBreathesMoreOften) {
  struct Case {
    std::int64_t milliseconds;  // that a row takes
    int rows;
  };
  for (const Case& c : {Case{1, 10000}, Case{30, 300}, Case{500, 20}}) {
    SCOPED_TRACE(c.milliseconds);
    RowDesktop desktop;
    Progress progress(desktop);
    std::int64_t shown = 0;
    std::int64_t longest = 0;
    std::int64_t breathed = 0;
    desktop.onProgress = [&](const RunProgress& state) {
      EXPECT_GE(desktop.now - shown, 100);
      EXPECT_EQ(state.total, c.rows);
      EXPECT_LE(state.done, c.rows);
      shown = desktop.now;
    };
    desktop.onBreath = [&] {
      longest = std::max(longest, desktop.now - breathed);
      breathed = desktop.now;
      return true;
    };
    const Progress::Run run(progress);
    progress.Begin("Rows", c.rows);
    for (int row = 0; row < c.rows; ++row) {
      desktop.now += c.milliseconds;
      progress.Step();
    }
    EXPECT_GE(shown, desktop.now - 200 - c.milliseconds);
    EXPECT_LE(longest, std::max<std::int64_t>(c.milliseconds, 100));
  }
}

TEST(Progress, ACancelledRunThrowsAndNothingIsToldOutsideOfOne) {
  RowDesktop desktop;
  desktop.onBreath = [] { return false; };
  Progress progress(desktop);
  const auto work = [&] {
    for (int row = 0; row < 100; ++row) {
      desktop.now += 1000;
      progress.Beat();
    }
  };
  work();
  const Progress::Run run(progress);
  EXPECT_THROW(work(), RunCancelled);
}

}  // namespace
}  // namespace merivane::test
