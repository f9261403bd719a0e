// The file around the model: its opening, its end, its number.
#include "reader_fixture.h"

namespace merivane::test {
namespace {

class ReaderFile : public ReaderTest {};

TEST_F(ReaderFile, FileThatCannotBeReadEndsTheProgramWithItsBox) {
  for (const std::string& path :
       {folder.Path("missing.txt"), folder.Path(""), folder.Write("empty.txt", "")}) {
    EXPECT_TRUE(EndsProgram([&] { ReadNeutralText(State(), path); })) << path;
  }
  EXPECT_EQ(desktop.MessageTexts(),
            std::vector<std::string>(3, "cannot open the celvar input text file"));
}

TEST_F(ReaderFile, WrongHeaderIsToldAndTheReadGoesOn) {
  EXPECT_THAT(Read(With(kModel, {{"Dunmar", "dunmar"}})),
              ElementsAre("Celvar input text file is not valid"));
  EXPECT_EQ(CountRows(Model(), "Scenario"), 1u);
}

TEST_F(ReaderFile, DatabaseThatNobodyOpenedIsReported) {
  State().gMspConn.reset();
  EXPECT_THAT(Read(kModel), ElementsAre(Box(kObjectNotSet)));
}

TEST_F(ReaderFile, CutAnywhereEndsInABoxWithTheRowsSoFar) {
  std::string text = kModel + "OSTN List|In, out|End  OSTN List|";
  std::size_t before = 0;
  for (std::size_t length = 1; length <= text.size(); ++length) {
    State().gMspProjId = static_cast<std::int16_t>(length);
    const auto boxes = Read(text.substr(0, length));
    std::size_t rows = 0;
    for (const char* table :
         {"Activity_Pool", "Object_Pool", "Misc", "Fact_Pool", "Scenario", "Activity_in_Scenario",
          "Junctions_in_Scenario", "Links_in_Scenario", "OSTN_List"}) {
      rows += CountRows(Model(), table, "where Msp_ProjID = " + std::to_string(length));
    }
    ASSERT_GE(rows + 1, before) << length;  // a link ends where its property list is cut off
    ASSERT_TRUE(rows >= 8 || !boxes.empty()) << length;
    before = rows;
  }
  EXPECT_EQ(before, 9u);
  EXPECT_THAT(desktop.MessageTexts(), IsEmpty());
}

TEST_F(ReaderFile, LongLinesAndEveryByteAreKept) {
  std::string line(1'000'000, 'x');
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char byte = static_cast<char>(i % 256);
    if (byte != '\r' && byte != '\n' && byte != '|') line[i] = byte;
  }
  EXPECT_THAT(Read(With(kModel, {{"  Glossary|", "  Glossary|" + line + "|"}})), IsEmpty());
  EXPECT_TRUE(Column("Glossary", "Activity_Pool") == line + "\r\n");
}

TEST_F(ReaderFile, InputKeepsItsNumberUntilTheTranslationIsOver) {
  Read(kModel);
  EXPECT_FALSE(State().files.IsOpen(1));
  EXPECT_EQ(State().files.FreeFile(), 2);
  ReleaseNeutralTextFile(State());
  EXPECT_EQ(State().files.FreeFile(), 1);

  Read("Dunmar Neutral Text|");
  EXPECT_TRUE(State().files.IsOpen(1)) << "a failed read leaves the file open";
  ReleaseNeutralTextFile(State());
  EXPECT_FALSE(State().files.IsOpen(1));
}

TEST_F(ReaderFile, EndBehindTheScenariosIsAskedOfFileOne) {
  State().files.OpenForOutput(1, folder.Path("other.txt"));
  EXPECT_THAT(Read(kModel), ElementsAre(Box(kInputPastEndOfFile)));
  State().files.Close(1);
  State().files.Reserve(1);
  EXPECT_THAT(Read(kModel), ElementsAre(Box(kBadFileNumber)));
}

TEST_F(ReaderFile, ReferentAndOstnListsUpToTheLimitAreKept) {
  for (const std::size_t length : {63'998u, 63'999u}) {
    const std::string line = std::string(length, 'x') + "|";
    EXPECT_THAT(Read(With(kModel, {{"  Referent List|", "  Referent List|" + line}}) +
                     "see the OSTN List|" + line + "End  OSTN List|"),
                IsEmpty());
  }
  EXPECT_EQ(Column("OSTN_List", "OSTN_List"), std::string(63'998, 'x') + "\r\n");
  EXPECT_EQ(Column("Referent_List", "Scenario"), std::string(63'998, 'x') + "\r\n| ");
}

}  // namespace
}  // namespace merivane::test
