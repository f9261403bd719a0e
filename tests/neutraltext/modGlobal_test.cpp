// The reporters and primitives that every part calls.
#include "neutraltext/modGlobal.h"

#include <gmock/gmock.h>

#include "platform/scripted_desktop.h"
#include "program/error_boxes.h"

namespace merivane::test {

using namespace neutraltext;

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
