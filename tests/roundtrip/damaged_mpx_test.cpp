#include <string>
#include <vector>

#include "mpx_fixture.h"

namespace merivane::test {
namespace {

class DamagedMpx : public MpxFixture {
 protected:
  // "ended: " and the last box when the program ended on it, "box: " when the driver returned.
  std::string Outcome(const std::string& mpx, std::int16_t mode = kRebuildModel) {
    desktop.shown.clear();
    bool done = false;
    const bool ended = EndsProgram([&] { done = Translate(mpx, mode); });
    if (done) return "done";
    const std::vector<std::string> texts = desktop.MessageTexts();
    return (ended ? "ended: " : "box: ") + (texts.empty() ? "none" : texts.back());
  }
};

TEST_F(DamagedMpx, EndsInTheBoxOfItsFault) {
  const std::string past = "box: " + ErrorText(kInputPastEndOfFile);
  const std::string mismatch = "box: " + ErrorText(kTypeMismatch);
  const std::string noRecord = "box: " + ErrorText(kNoCurrentRecord);
  const std::string weld = Task(1, "Weld", 1, "");
  const std::string whole = Plan("", weld);
  const auto without = [&](std::string_view line) {
    std::string text = whole;
    const std::size_t at = text.find("\r\n" + std::string(line)) + 2;
    return text.erase(at, text.find("\r\n", at) + 2 - at);
  };
  const std::string quotes = "70,2,2,\"a\"\"b\",1d,";
  struct Case {
    const char* rule;
    std::string mpx, outcome;
  };
  const std::vector<Case> cases = {
      {"whole", whole, "done"},
      {"empty", "", past},
      {"not MPX", "Dunmar Neutral Text\r\n11,2,\r\n", "ended: "},
      {"binary", std::string("\0\x01\xFFMPX\0,,\r\n", 11) + std::string(5000, '\0'), past},
      {"no record 11", without("11,"), past},
      {"no record 30", without("30,"), past},
      {"no record 40", without("40,"), past},
      {"no record 60", without("60,"), past},
      {"another separator", "MPX\r\n11;2;0\r\n40;ID;\r\n60;ID;\r\n", past},
      {"default units that are no number", Plan("", weld, "11,days,"), mismatch},
      {"a million commas", Plan("", "70" + std::string(1000000, ',') + "\r\n" + weld), "done"},
      {"an id beyond 16 bits", Plan("", "70000,\r\n"), "box: " + ErrorText(kOverflow)},
      {"no task", Plan("", ""), noRecord},
      {"a task deep under nothing", Plan("", Task(1, "Weld", 2, "")), noRecord},
      {"a task name with a comma", Plan("", Task(1, "Cut, weld", 1, "")),
       "ended: Merivane requires that Task names do not have commas.  Please change '\"Cut, "
       "weld'."},
      {"a task name with quotes", Plan("", weld + quotes + "\r\n"),
       "ended: Merivane requires that Task and Resource names do not have double quotes.  Please "
       "change '" +
           quotes + "'."},
      {"a quote that never closes", Plan("", "70,2,2,\"Weld,1d,Yes,1,,,\r\n" + weld), "done"},
      {"a resource id that is no number", Plan("50,x,1,Welder,W,1,\r\n", weld), mismatch},
      {"a quantity that is no number", Plan("50,1,1,Welder,W,100%,\r\n", weld), mismatch},
  };
  for (const Case& test : cases) EXPECT_EQ(Outcome(test.mpx), test.outcome) << test.rule;
  EXPECT_EQ(Outcome(Plan("50,1,1,Welder's mate,W,1,\r\n", weld)).substr(0, 5), "box: ");
}

TEST_F(DamagedMpx, APlanWithoutATaskOfLevelOneEndsTheProgram) {
  EXPECT_EQ(Outcome(Plan("", Task(0, "Plan", 0, ""))), "ended: Error in Translation");
}

TEST_F(DamagedMpx, CutAnywhereItEndsWithoutAWholeTextAndCanBeReadAgain) {
  const std::string whole =
      Plan(Lines({"50,1,1,Welder,W,1,", "51,\"Good hands\"", "55,Standard"}),
           Task(1, "Weld", 1, "") + "71,\"Note\"\r\n75,1,1,8.00h\r\n" + Task(2, "Cut", 2, "", "1"));
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    const bool odd = length % 2 == 1;
    const std::string outcome = Outcome(whole.substr(0, length), odd ? kMergePlan : kRebuildModel);
    const bool told = outcome == "ended: " || (outcome.starts_with("box: ") && outcome != "box: ");
    const bool hasTask = length > whole.find("\r\n70,");
    EXPECT_TRUE(told || (hasTask && outcome == "done")) << length << outcome;
  }
  EXPECT_EQ(Outcome(whole), "done");
}

TEST_F(DamagedMpx, AFileThatAFailedRunLeftOpenKeepsItsNumberUntilTheNextRun) {
  Outcome(Plan("", ""));
  const std::int16_t left = State().mpxInFileNo;
  ASSERT_TRUE(program->files.IsOpen(left));
  EXPECT_NE(program->files.FreeFile(), left);
  EXPECT_EQ(Outcome(Plan("", Task(1, "Weld", 1, ""))), "done");
  EXPECT_FALSE(program->files.IsOpen(left));
  EXPECT_FALSE(program->files.IsOpen(State().gOutFile));
  EXPECT_TRUE(Model().ends_with("End  Scenario List\r\n\r\n"));
}

TEST_F(DamagedMpx, AMissingFileOrConnectionIsToldInABox) {
  EXPECT_FALSE(TranslateMpx(State(), folder.Path("nowhere.mpx"), "", kMergePlan));
  EXPECT_FALSE(TranslateMpx(State(), folder.Path(""), "", kMergePlan));
  const std::string plan = folder.Write("plan.mpx", Plan("", Task(1, "Weld", 1, "")));
  EXPECT_FALSE(TranslateMpx(State(), plan, "", kMergePlan));
  EXPECT_EQ(desktop.MessageTexts().size(), 3U);
  EXPECT_EQ(desktop.MessageTexts().back(), ErrorText(kObjectNotSet));
}

}  // namespace
}  // namespace merivane::test
