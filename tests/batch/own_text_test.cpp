// The commands over texts that Merivane wrote.
#include "batch_fixture.h"

namespace merivane::test {

namespace {

class OwnTextCommands : public Batch {
 protected:
  OwnTextCommands() {
    Succeed({"to-project", Sample("festival.txt"), "--database", plan});
    Succeed({"to-model", "--database", plan, "--project", "1", "--output", model});
  }
  std::string again = folder.Path("again.mdb");
};

TEST_F(OwnTextCommands, ToProjectTakesItWhereAsked) {
  EXPECT_EQ(Run({"to-project", model, "--database", again}), kDoneWithMessages);
  EXPECT_NE(err.str().find(model + " is in the form that Merivane writes"), std::string::npos);
  EXPECT_NE(err.str().find("--own-text"), std::string::npos);
  Succeed({"to-project", model, "--database", again, "--overwrite", "--own-text"});
  EXPECT_EQ(err.str(), "");
  EXPECT_EQ(out.str().find("15 tasks, 6 resources, "), 0U) << out.str();
  Succeed({"to-project", Sample("clinic.txt"), "--database", again, "--append", "--own-text"});
}

TEST_F(OwnTextCommands, FindingsCountTheLinesOfTheFile) {
  EXPECT_EQ(Run({"check", model, "--json"}), kDoneWithMessages);
  std::vector<std::string> lines;
  std::istringstream text(ReadFile(model));
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  int units = 0;
  const auto report = nlohmann::json::parse(out.str());
  for (const auto& finding : report["findings"]) {
    if (finding["element"].is_null() || finding["element"]["kind"] != "unit") continue;
    ++units;
    const std::string number = "  #" + std::to_string(finding["element"]["number"].get<int>());
    EXPECT_TRUE(lines[finding["line"].get<std::size_t>() - 1].ends_with(number + "\r")) << finding;
  }
  EXPECT_GT(units, 3);
}

TEST_F(OwnTextCommands, PicturesAreMadeOfIt) {
  Succeed({"draw", model, "--output", folder.Path("model.svg")});
  EXPECT_EQ(out.str().find("3 diagrams;"), 0U) << out.str();
  Succeed({"report", model, "--output", folder.Path("model.html")});
  EXPECT_EQ(out.str().find("3 diagrams and the plan;"), 0U) << out.str();
}

}  // namespace
}  // namespace merivane::test
