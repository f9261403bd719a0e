// Two files held against each other on a command line.
#include <gmock/gmock.h>

#include "batch_fixture.h"

namespace merivane::test {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

class DiffCommand : public Batch {
 protected:
  DiffCommand() {
    Succeed({"to-project", Sample("onboarding.txt"), "--database", plan, "--mpx", mpx});
  }
};

TEST_F(DiffCommand, TellsOfSameAndDifferentFilesByItsStatus) {
  Succeed({"diff", Sample("onboarding.txt"), plan, "--project", "1"});
  EXPECT_EQ(out.str(), "The models are the same.\n");
  Succeed({"diff", mpx, plan, "--project", "1"});
  EXPECT_EQ(out.str(), "The plans are the same.\n");
  Replace(mpx, "Set up the desk,1.50d", "Set up the desk,2.50d");
  const auto before = Files();
  EXPECT_EQ(Run({"diff", plan, mpx, "--project", "1"}), kFailed);
  EXPECT_EQ(out.str(),
            "changed: row 2 of the plan, task 'Set up the desk': It takes 2.50 days instead of "
            "1.50.\n0 added, 1 changed, 0 removed between the plans\n");
  EXPECT_EQ(Run({"diff", Sample("onboarding.txt"), mpx, "--json"}), kFailed);
  const auto report = nlohmann::json::parse(out.str());
  EXPECT_EQ(report["compared"], "plans");
  EXPECT_EQ(report["same"], false);
  EXPECT_EQ(report["differences"][0]["planRow"], 2);
  EXPECT_EQ(Files(), before);
}

TEST_F(DiffCommand, TakesAMergedTextInItsWrittenForm) {
  Succeed({"to-model", "--mpx", mpx, "--interim", plan, "--merge", "1", "--output", model});
  EXPECT_EQ(Run({"diff", Sample("onboarding.txt"), model}), kFailed);
  EXPECT_THAT(out.str(), HasSubstr("changed: unit 2 'Set up the desk': It takes 1 days instead of "
                                   "1.5.\n"));
  EXPECT_THAT(out.str(), EndsWith("between the models\n"));
  Succeed({"diff", model, model});
}

TEST_F(DiffCommand, RefusesWhatItCantCompare) {
  const std::string text = Sample("onboarding.txt");
  struct Case {
    std::vector<std::string> arguments;
    const char* word;
  };
  const Case cases[] = {
      {{text}, "SECOND is required"},
      {{text, Sample("README.md")}, "is no name of a file to compare"},
      {{text, folder.Path("none.mpx")}, "isn't there"},
      {{text, plan}, "a database needs --project"},
      {{text, mpx, "--project", "1"}, "neither file is one"},
      {{plan, text, "--project", "1", "--project", "1"}, "once for each"},
      {{plan, text, "--project", "7"}, "no project '7'"},
      {{Sample("bakery.txt"), mpx}, "One of 'Weekday bread', 'Saturday cakes' has to be chosen."},
  };
  for (const Case& row : cases) {
    std::vector<std::string> arguments = {"diff"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    EXPECT_EQ(Run(arguments), kRefused) << row.word;
    EXPECT_THAT(err.str(), HasSubstr(row.word));
    EXPECT_EQ(out.str(), "") << row.word;
  }
}

TEST_F(DiffCommand, ComparesTwoProjectsOfOneDatabase) {
  Succeed({"to-project", Sample("clinic.txt"), "--database", plan, "--append"});
  EXPECT_EQ(Run({"diff", plan, plan, "--project", "1", "--project", "2"}), kFailed);
  EXPECT_THAT(out.str(), HasSubstr("Set up the desk"));
  Succeed({"diff", plan, plan, "--project", "2"});
}

}  // namespace
}  // namespace merivane::test
