#include "program/error_boxes.h"

#include <gmock/gmock.h>

#include "platform/scripted_desktop.h"

namespace merivane::test {

using namespace program;

namespace {

TEST(Reporters, ShowTheErrorsDescription) {
  ScriptedDesktop desktop;
  ReportError(desktop, RunTimeError(kPermissionDenied, "locked"));
  EXPECT_THROW(FatalAbort(desktop, RunTimeError(1, "gone")), ProgramEnd);
  EXPECT_THAT(desktop.MessageTexts(),
              ::testing::ElementsAre("locked\r\n",
                                     "The selected file may be already open for editing.  Please "
                                     "close it and retry.",
                                     "gone"));
  EXPECT_EQ(desktop.pointer, kPointerArrow);
}

}  // namespace
}  // namespace merivane::test
