// to-project over the model of a database.
#include <gmock/gmock.h>

#include "batch_fixture.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;

class PlanAgainCommand : public Batch {
 protected:
  PlanAgainCommand() {
    Succeed({"to-project", Sample("onboarding.txt"), "--database", plan, "--xml", xml});
  }
  int Again(const std::vector<std::string>& more = {}) {
    return Run({"to-project", "--from", plan, "--project", "1", "--database", again}, more);
  }

  std::string xml = folder.Path("plan.xml");
  std::string again = folder.Path("again.mdb");
  std::string xmlAgain = folder.Path("again.xml");
};

TEST_F(PlanAgainCommand, GivesTheSamePlan) {
  EXPECT_EQ(Again({"--xml", xmlAgain}), kDone) << err.str();
  EXPECT_EQ(ReadFile(xmlAgain), ReadFile(xml));
  EXPECT_EQ(out.str().find("5 tasks, 3 resources, "), 0U) << out.str();
}

TEST_F(PlanAgainCommand, GivesThePlanThatWasMerged) {
  Replace(xml, "<Name>Set up the desk<", "<Name>Set up two desks<");
  Succeed({"to-model", "--xml", xml, "--interim", plan, "--merge", "1", "--output", model});
  EXPECT_EQ(Again({"--xml", xmlAgain}), kDone) << err.str();
  EXPECT_EQ(ReadFile(xmlAgain), ReadFile(xml));
}

// A rebuilt model has no project's name, no scenario's ID, and notes with a quote in front.
TEST_F(PlanAgainCommand, PlanOfARebuiltModelIsMerged) {
  const std::string mpx = folder.Path("plan.mpx");
  Succeed(
      {"to-project", Sample("onboarding.txt"), "--database", plan, "--overwrite", "--mpx", mpx});
  Succeed({"to-model", "--mpx", mpx, "--interim", plan, "--overwrite", "--output", model});
  const std::string mpxAgain = folder.Path("again.mpx");
  ASSERT_EQ(Again({"--xml", xmlAgain, "--mpx", mpxAgain}), kDone) << err.str();
  for (const auto& [option, file] : {std::pair{"--xml", xmlAgain}, std::pair{"--mpx", mpxAgain}}) {
    const std::vector<std::string> merge{"to-model", option, file,       "--interim", again,
                                         "--merge",  "1",    "--output", model,       "--force"};
    Succeed(merge);
    EXPECT_EQ(Run(merge, {"--complete"}), kDone) << err.str();
    EXPECT_THAT(out.str(), HasSubstr("The merged model gives the plan that came in.")) << option;
  }
}

TEST_F(PlanAgainCommand, AppendedProjectHasANameOfItsOwn) {
  ASSERT_EQ(Again(), kDone);
  EXPECT_EQ(Again({"--append"}), kDone) << err.str();
  Succeed({"projects", again, "--json"});
  const auto projects = nlohmann::json::parse(out.str());
  ASSERT_EQ(projects.size(), 2U);
  EXPECT_EQ(projects[1]["name"], projects[0]["name"].get<std::string>() + "(2)");
  EXPECT_EQ(projects[1]["tasks"], 5);
}

TEST_F(PlanAgainCommand, WhatCannotBePlannedIsRefusedAndNothingIsTouched) {
  Succeed({"to-project", Sample("clinic.txt"), "--database", again});
  RawDatabase(plan).Run("delete from Scenario");
  const auto before = Files();
  const struct {
    const char* what;
    std::vector<std::string> arguments;
    const char* word;
  } cases[] = {
      {"no model", {"--from", plan, "--project", "1"}, "holds no model of that project"},
      {"no project", {"--from", plan, "--project", "7"}, "7"},
      {"no database", {"--from", Sample("clinic.txt"), "--project", "1"}, "clinic.txt"},
      {"not there", {"--from", folder.Path("none.mdb"), "--project", "1"}, "none.mdb"},
      {"the same file", {"--from", again, "--project", "1"}, "are the same file"},
      {"project alone", {"--project", "1"}, "--from"},
      {"text and database", {Sample("clinic.txt"), "--from", plan, "--project", "1"}, "--from"},
      {"neither", {}, "MODEL or --from"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    EXPECT_EQ(Run({"to-project", "--database", again, "--overwrite"}, each.arguments), kRefused);
    EXPECT_NE(err.str().find(each.word), std::string::npos) << err.str();
    EXPECT_EQ(Files(), before);
  }
}

}  // namespace
}  // namespace merivane::test
