#include "neutraltext/held_rows.h"

#include "reader_fixture.h"

namespace merivane::test {
namespace {

class Holder : public ReaderListener {
 public:
  HeldRows rows{[](std::string_view, std::string_view) { return true; }};
  void OnLine(const std::string&) override {}
  void OnSearch(std::string_view) override {}
  void OnRecord(ElementKind, std::string_view) override {}
  void OnField(std::size_t, std::size_t) override {}
  void OnCut(std::size_t) override {}
  void OnNumber(NumberUse, const std::string&, double) override {}
  std::optional<std::int16_t> OnBadNumber(NumberUse, const std::string&,
                                          const RunTimeError&) override {
    return std::nullopt;
  }
  bool OnBadLine(const RunTimeError&) override { return false; }
  bool OnRefusedName(std::string_view) override { return false; }
  bool OnRow(RowChange change, std::string_view table, std::span<const Cell> cells) override {
    rows.Take(change, table, cells);
    return false;
  }
};

struct HeldModel {
  const char* name;
  std::string text;
};

void PrintTo(const HeldModel& model, std::ostream* out) { *out << model.name; }

class HeldRowsTest : public ReaderTest, public ::testing::WithParamInterface<HeldModel> {
 protected:
  std::string Stored() {
    std::string dump;
    for (const char* table :
         {"MSP_PROJECTS", "Activity_Pool", "Object_Pool", "Fact_Pool", "Misc", "Scenario",
          "Activity_in_Scenario", "Object_in_Activity_in_Scenario", "Junctions_in_Scenario",
          "Facts_in_Junction", "Links_in_Scenario", "OSTN_List"}) {
      dump += DumpTable(Model(), table);
    }
    return dump;
  }
};

TEST_P(HeldRowsTest, EndUpAsTheReaderStoresThem) {
  const std::vector<std::string> boxes = Read(GetParam().text);
  const std::string stored = Stored();

  State().gMspConn = std::make_unique<Connection>(program->workspace);
  State().gMspConn->Open(ConnectionText(TemplateDatabase()), OpenMode::kCopy);
  State().fields = {};
  Holder holder;
  State().readerListener = &holder;
  Read(GetParam().text);
  EXPECT_EQ(CountRows(Model(), "Activity_in_Scenario"), 0U);
  holder.rows.StoreIn(State());
  EXPECT_EQ(Stored(), stored);
  EXPECT_EQ(desktop.MessageTexts(), boxes);
}

std::string Sample(const char* name) {
  return ReadFile(MERIVANE_SAMPLES + std::string("/") + name + ".txt");
}

INSTANTIATE_TEST_SUITE_P(
    Models, HeldRowsTest,
    ::testing::Values(HeldModel{"Onboarding", Sample("onboarding")},
                      HeldModel{"Festival", Sample("festival")},
                      HeldModel{"Clinic", Sample("clinic")},
                      HeldModel{"LinkThatNoColumnHolds",
                                With(kModel, {{kLink, With(kLink, {{"#1", "#x"}}) + kLink}})}),
    [](const auto& model) { return model.param.name; });

}  // namespace
}  // namespace merivane::test
