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

TEST_F(ReaderFile, CutAnywhereEndsInABoxWithTheRowsSoFar) {
  const std::string text = kModel + "OSTN List|In, out|End  OSTN List|";
  std::size_t before = 0;
  for (std::size_t length = 1; length <= text.size(); ++length) {
    State().gMspProjId = static_cast<std::int16_t>(length);
    const bool told = !Read(text.substr(0, length)).empty();
    const std::size_t rows = CountOfRows();
    ASSERT_GE(rows + 1, before) << length;  // a link ends where its property list is cut off
    ASSERT_TRUE(rows >= 8 || told) << length;
    before = rows;
  }
  EXPECT_EQ(before, 9U);
  EXPECT_THAT(desktop.MessageTexts(), IsEmpty());
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
    EXPECT_THAT(Read(Behind(kModel, "  Referent List|", line) + "see the OSTN List|" + line +
                     "End  OSTN List|"),
                IsEmpty());
  }
  const std::string kept = std::string(63'998, 'x') + "\r\n";
  EXPECT_EQ(Columns("OSTN_List", {"OSTN_List"}), kept);
  EXPECT_EQ(Columns("Scenario", {"Referent_List"}), kept + "| ");
}

}  // namespace
}  // namespace merivane::test
