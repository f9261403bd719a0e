#include "neutraltext/held_rows.h"

#include "reader_fixture.h"

namespace merivane::test {
namespace {

class Holder : public ReaderListener {
 public:
  HeldRows rows{[](std::string_view) { return true; }};
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
    rows.Hold(change, table, cells);
    return false;
  }
};

const std::string kBadLink = "LinkThatNoColumnHolds";

// Of a sample, or of a model with that link.
class HeldRowsTest : public ReaderTest, public ::testing::WithParamInterface<std::string> {
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
  const std::string model = GetParam() == kBadLink
                                ? With(kModel, {{kLink, With(kLink, {{"#1", "#x"}}) + kLink}})
                                : ReadFile(MERIVANE_SAMPLES "/" + GetParam() + ".txt");
  const std::vector<std::string> boxes = Read(model);
  const std::string stored = Stored();

  State().gMspConn = std::make_unique<Connection>(program->workspace);
  State().gMspConn->Open(ConnectionText(TemplateDatabase()), OpenMode::kCopy);
  State().fields = {};
  Holder holder;
  State().readerListener = &holder;
  Read(model);
  EXPECT_EQ(CountRows(Model(), "Activity_in_Scenario"), 0U);
  holder.rows.StoreIn(State());
  EXPECT_EQ(Stored(), stored);
  EXPECT_EQ(desktop.MessageTexts(), boxes);
}

INSTANTIATE_TEST_SUITE_P(Models, HeldRowsTest,
                         ::testing::Values("onboarding", "festival", "clinic", kBadLink),
                         [](const auto& name) { return name.param; });

}  // namespace
}  // namespace merivane::test
