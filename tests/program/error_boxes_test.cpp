#include "program/error_boxes.h"

#include <gmock/gmock.h>

#include "scripted_desktop.h"

namespace merivane::test {

using namespace program;

namespace {

TEST(Reporters, ShowTheErrorsDescription) {
  ScriptedDesktop desktop;
  ReportError(desktop, RunTimeError(kPermissionDenied, "locked"));
  EXPECT_THAT(desktop.MessageTexts(),
              ::testing::ElementsAre("locked\r\n",
                                     "The selected file may be already open for editing.  Please "
                                     "close it and retry."));
}

}  // namespace
}  // namespace merivane::test
