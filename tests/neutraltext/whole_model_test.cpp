// The whole model of a database as a text, read again.
#include <gmock/gmock.h>

#include "round_fixture.h"
#include "store/ask.h"

namespace merivane::test {

namespace {

class WholeModel : public RoundFixture {
 protected:
  WholeModel() { takesOwnText = true; }

  // A text says the same with and without a line end behind it, and nothing by a blank. What an
  // object took over from the one before stands at the unit, or in a longer property list.
  std::vector<std::string> Model() {
    std::vector<std::string> model;
    const auto connection = Connect(OpenMode::kReadOnly);
    for (const std::string table :
         {"Activity_Pool", "Object_Pool", "Fact_Pool", "Scenario", "Activity_in_Scenario",
          "Object_in_Activity_in_Scenario", "Junctions_in_Scenario", "Facts_in_Junction",
          "Links_in_Scenario"}) {
      model.push_back(table);
      Recordset set = AskStatic(connection.get(), "select * from ", table);
      for (; !set.Eof(); set.MoveNext()) {
        std::string& row = model.emplace_back();
        for (int i = 0; i < set.FieldCount(); ++i) {
          const std::string column = set.FieldName(i);
          if (column == "Property_List" && table.starts_with("Object_")) continue;
          if (column == "Labor_Rule" && table.starts_with("Object_in")) continue;
          if (table == "Scenario" && (column == "Type" || column == "Parent")) continue;
          std::string text = Joined(set.Field(i));
          if (column == "Review_Status" && text.empty()) text = "Working";
          while (text.ends_with("\r\n")) text.resize(text.size() - 2);
          if (!text.empty() && text != " ") row += column + "=" + text + "; ";
        }
      }
    }
    return model;
  }

  void ExpectSameModel(const std::string& path) {
    Translate(path);
    const auto before = Model();
    ProjectToModel& state = program->projectToModel;
    state.gProjectConn = Connect(OpenMode::kReadOnly);
    state.gInterimProjId = 1;
    const std::string text = OpenOutput(state);
    WriteWholeModel(state);
    state.gProjectConn.reset();
    Translate(text);
    EXPECT_THAT(desktop.MessageTexts(), testing::IsEmpty());
    EXPECT_EQ(Model(), before);
  }
};

using WholeRandomModels = OfRandomModels<WholeModel>;
INSTANTIATE_TEST_SUITE_P(Seeds, WholeRandomModels, testing::Range(0u, 4u));

TEST_P(WholeRandomModels, GiveTheirRowsAgain) {
  ForSeeds(15, [this](const std::string& model) { ExpectSameModel(model); });
}

TEST_F(WholeModel, OfEverySampleGivesItsRowsAgain) {
  for (const auto& entry : std::filesystem::directory_iterator(MERIVANE_SAMPLES)) {
    if (entry.path().extension() != ".txt") continue;
    SCOPED_TRACE(entry.path().string());
    ExpectSameModel(entry.path().string());
  }
}

}  // namespace
}  // namespace merivane::test
