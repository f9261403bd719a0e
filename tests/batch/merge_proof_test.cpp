// The proof behind a merge and in its preview.
#include "batch_fixture.h"

namespace merivane::test {

namespace {

class MergeProofCommand : public Batch {
 protected:
  MergeProofCommand() {
    Succeed({"to-project", Sample("onboarding.txt"), "--database", plan, "--mpx", mpx});
  }
  int Merge(const std::vector<std::string>& more) {
    return Run({"to-model", "--mpx", mpx, "--interim", plan, "--merge", "1"}, more);
  }
};

TEST_F(MergeProofCommand, IsTheSameInThePreviewAndBehindTheMerge) {
  const std::string told = "9 differences between the plan that came in and what the merged model";
  EXPECT_EQ(Merge({"--dry-run", "--json"}), kDone);
  const auto proof = nlohmann::json::parse(out.str())["proof"];
  EXPECT_EQ(proof["agrees"], false);
  ASSERT_EQ(proof["differences"].size(), 9U);
  EXPECT_EQ(proof["differences"][0]["change"], "differs");
  EXPECT_EQ(proof["differences"][0]["planRow"], 2);
  EXPECT_EQ(Merge({"--dry-run"}), kDone);
  EXPECT_NE(out.str().find(told), std::string::npos) << out.str();
  EXPECT_EQ(Merge({"--output", model}), kDone) << err.str();
  EXPECT_NE(out.str().find(told), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("differs: row 2 of the plan, task 'Set up the desk': It takes 1.50 days "
                           "in the plan, and 1 by the merged model. Set the cycle time of its "
                           "objects in the model. --complete keeps it.\n"),
            std::string::npos)
      << out.str();
  Replace(mpx, "Yes,1,,\"4\"", "Yes,1,,\"4FS+2d\"");
  EXPECT_EQ(Merge({"--dry-run"}), kDone);
  EXPECT_NE(out.str().find("A model holds no lags.\n"), std::string::npos) << out.str();
}

TEST_F(MergeProofCommand, IsLeftOutWhereAsked) {
  EXPECT_EQ(Merge({"--dry-run", "--json", "--no-proof"}), kDone);
  EXPECT_TRUE(nlohmann::json::parse(out.str())["proof"].is_null());
  EXPECT_EQ(Merge({"--output", model, "--no-proof"}), kDone);
  EXPECT_EQ(out.str().find("differ"), std::string::npos) << out.str();
}

TEST_F(MergeProofCommand, MergeStandsThatHasNoProof) {
  EXPECT_EQ(Merge({"--output", model, "--template", folder.Path("none.mdb")}), kDone);
  EXPECT_NE(err.str().find("the proof can't be told: "), std::string::npos) << err.str();
  EXPECT_NE(out.str().find("written: " + model), std::string::npos) << out.str();
  EXPECT_TRUE(fs::exists(model));
}

TEST_F(MergeProofCommand, ACompleteMergeGivesThePlanThatCameIn) {
  ASSERT_EQ(Merge({"--complete", "--dry-run", "--json"}), kDone) << err.str();
  const auto preview = nlohmann::json::parse(out.str());
  EXPECT_EQ(preview["merges"], true);
  EXPECT_EQ(preview["proof"]["agrees"], true) << out.str();
  EXPECT_TRUE(preview["changes"].empty()) << out.str();
  ASSERT_EQ(Merge({"--complete", "--output", model}), kDone) << err.str();
  EXPECT_NE(out.str().find("The merged model gives the plan that came in."), std::string::npos)
      << out.str();
  EXPECT_TRUE(fs::exists(plan + ".bak"));
  EXPECT_NE(ReadFile(model).find("Cycle-Time:  1.5\r\n"), std::string::npos);
  EXPECT_EQ(Run({"to-project", "--from", plan, "--project", "1", "--mpx", folder.Path("next.mpx"),
                 "--database", folder.Path("next.mdb")},
                {}),
            kDone)
      << err.str();
  const auto behindHead = [](const std::string& text) { return text.substr(text.find("\r\n40,")); };
  EXPECT_EQ(behindHead(ReadFile(folder.Path("next.mpx"))), behindHead(ReadFile(mpx)));
}

}  // namespace
}  // namespace merivane::test
