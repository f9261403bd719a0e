#include "mpx_fixture.h"

namespace merivane::test {

namespace {

class DamagedMpx : public MpxFixture {
 protected:
  // "done", or the last box, behind "ended: " when the program ended on it.
  std::string Outcome(const std::string& mpx, std::int16_t mode = kRebuildModel) {
    desktop.boxes.clear();
    bool done = false;
    const bool ended = EndsProgram([&] { done = Translate(mpx, mode); });
    return done ? "done" : (ended ? "ended: " : "") + desktop.MessageTexts().at(0);
  }
};

TEST_F(DamagedMpx, EndsInTheBoxOfItsFault) {
  const std::string weld = Tasks("1 Weld 1"), whole = Plan("", weld);
  const auto without = [&](const std::string& line) {
    const std::size_t at = whole.find("\r\n" + line);
    return whole.substr(0, at) + whole.substr(whole.find("\r\n", at + 2));
  };
  const std::string past = ErrorText(kInputPastEndOfFile), mismatch = ErrorText(kTypeMismatch);
  const std::string quotes = "70,2,2,\"a\"\"b\",1d,";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {whole, "done"},
      {"", past},
      {"Dunmar Neutral Text\r\n11,2,\r\n", "ended: "},
      {std::string("\0\x01\xFFMPX\0,,\r\n", 11) + std::string(5000, '\0'), past},
      {without("11,"), past},
      {without("30,"), past},
      {without("40,"), past},
      {without("60,"), past},
      {"MPX\r\n11;2;0\r\n40;ID;\r\n60;ID;\r\n", past},
      {Plan("", weld, "11,days,"), mismatch},
      {Plan("", "70" + std::string(1000000, ',') + "\r\n" + weld), "done"},
      {Plan("", "70000,\r\n"), ErrorText(kOverflow)},
      {Plan("", ""), ErrorText(kNoCurrentRecord)},
      {Plan("", Tasks("1 Weld 2")), ErrorText(kNoCurrentRecord)},
      {Plan("", "70,2,2,\"Weld,1d,Yes,1,,,\r\n" + weld), "done"},
      {Plan("", weld + quotes),
       "ended: Merivane requires that Task and Resource names do not have double quotes.  Please "
       "change '" +
           quotes + "'."},
      {Plan("", "70,2,2,\"Cut, weld\",1d,"),
       "ended: Merivane requires that Task names do not have commas.  Please change '\"Cut, "
       "weld'."},
      {Plan("50,x,1,Welder,W,1,\r\n", weld), mismatch},
      {Plan("50,1,1,Welder,W,100%,\r\n", weld), mismatch},
  };
  for (const auto& [mpx, outcome] : cases) EXPECT_EQ(Outcome(mpx), outcome) << mpx.substr(0, 300);
  EXPECT_FALSE(Translate(Plan("50,1,1,Welder's mate,W,1,\r\n", weld), kMergePlan));
}

TEST_F(DamagedMpx, APlanWithoutATopScenarioEndsTheProgram) {
  EXPECT_EQ(Outcome(Plan("", Tasks("0 Plan 0"))), "ended: Error in Translation");
}

TEST_F(DamagedMpx, CutAnywhereItEndsAndCanBeReadAgain) {
  const std::string whole =
      Plan(Lines("50,1,1,Welder,W,1,;51,\"Good hands\";55,Standard"),
           Tasks("1 Weld 1") + Lines("71,\"Note\";75,1,1,8.00h") + Tasks("2 Cut 2 - 1"));
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    const std::string outcome =
        Outcome(whole.substr(0, length), length % 2 == 0 ? kMergePlan : kRebuildModel);
    EXPECT_FALSE(outcome.empty()) << length;
    EXPECT_TRUE(outcome != "done" || length > whole.find("\r\n70,")) << length;
  }
  EXPECT_EQ(Outcome(whole), "done");
}

TEST_F(DamagedMpx, AFileThatAFailedRunLeftOpenKeepsItsNumberUntilTheNextRun) {
  Outcome(Plan("", ""));
  const std::int16_t left = State().mpxInFileNo;
  ASSERT_TRUE(program->files.IsOpen(left));
  EXPECT_EQ(Outcome(Plan("", Tasks("1 Weld 1"))), "done");
  EXPECT_FALSE(program->files.IsOpen(left));
  EXPECT_FALSE(program->files.IsOpen(State().gOutFile));
  EXPECT_TRUE(Model().ends_with("End  Scenario List\r\n\r\n"));
}

TEST_F(DamagedMpx, AMissingFileOrConnectionIsToldInABox) {
  for (const std::string path : {"nowhere.mpx", "."}) {
    EXPECT_FALSE(TranslateMpx(State(), folder.Path(path), "", kMergePlan));
  }
  const std::string plan = folder.Write("plan.mpx", Plan("", Tasks("1 Weld 1")));
  EXPECT_FALSE(TranslateMpx(State(), plan, "", kMergePlan));
  EXPECT_EQ(desktop.MessageTexts().at(2), ErrorText(kObjectNotSet));
}

}  // namespace
}  // namespace merivane::test
