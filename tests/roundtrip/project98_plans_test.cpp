#include <filesystem>

#include "mpx_fixture.h"

namespace merivane::test {

namespace {

// Plans that Microsoft Project 98 wrote. They lie beside the project, not in it.
class Project98Plans : public MpxFixture {};

TEST_F(Project98Plans, BecomeAModelOrEndInTheBoxOfTheirFault) {
  const std::string folder = MERIVANE_PLANS;
  if (!std::filesystem::exists(folder)) GTEST_SKIP() << folder << " isn't there";
  const auto rebuild = [&](const std::string& name) {
    return Translate(ReadFile(folder + "/" + name + ".mpx"), kRebuildModel);
  };
  EXPECT_TRUE(rebuild("task-links-project98"));
  EXPECT_EQ(CountRows(*tables, "MSP_TASKS", "where KV7_SCENARIO_HEX = 1"), 16U);
  EXPECT_EQ(Table("Origin_Num, Destination_Num from Links_in_Scenario"),
            "1|2\n3|4\n5|6\n7|8\n9|10\n22|13\n22|14\n15|25\n16|25\n");
  EXPECT_FALSE(rebuild("sample")) << "its resource records begin with the name";
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{ErrorText(kTypeMismatch)});
  EXPECT_TRUE(rebuild("resource-misc-project98")) << "no task, but the scenario is there still";
  EXPECT_EQ(Table("RES_NAME, KV7_OBJ_GLOSSARY from MSP_RESOURCES where RES_UID > 0"),
            "Resource 1|Notes1\r\nResource 2|Notes2\r\n");
}

}  // namespace
}  // namespace merivane::test
