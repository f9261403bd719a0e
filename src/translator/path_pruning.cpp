#include "path_pruning.h"

#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "translation_steps.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::translator {

namespace {

constexpr int kRoundsForEachOccurrence = 100;

// The text between two positions, without its first character.
std::string WordWithoutLetter(std::string_view text, std::size_t before, std::size_t behind) {
  const auto from = static_cast<std::ptrdiff_t>(before);
  return Mid(text, from + 2, static_cast<std::ptrdiff_t>(behind) - from - 2);
}

}  // namespace

void PathPruning::Prune(const Value& junctionNum) {
  TranslationListener* listener = state_.translationListener;
  if (listener) listener->OnFanOut(junctionNum);
  const bool ownFact = ReadFact(junctionNum);
  if (listener) listener->OnPath(ownFact, linkId_, junctionDigits_);
  if (!IsNumericText(linkId_) || !IsNumericText(junctionDigits_)) return;
  FindStopJunction();
  Recordset links = LinksFrom(state_, junctionNum);
  for (; !links.Eof(); links.MoveNext()) {
    const Value destination = links.Field("Destination_Num");
    Recordset activity = ActivityHere(destination);
    if (Joined(links.Field("ID")) == linkId_) continue;
    if (LeaveOut(activity, destination)) RunWorkList();
  }
}

bool PathPruning::ReadFact(const Value& junctionNum) {
  Recordset facts = Ask(state_.gMspConn.get(),
                        "Select * from facts_in_junction where Msp_ProjID = ", state_.gMspProjId,
                        " and scenario_num = ", state_.currentScenarioNum,
                        " and Junction_Num = ", junctionNum, " order by Fact_num ");
  if (facts.Eof() || !HoldsNoCase(Joined(facts.Field("Fact_Name")), "PathAt")) return false;
  Recordset pool =
      Ask(state_.gMspConn.get(), "Select * from Fact_Pool where Msp_ProjID = ", state_.gMspProjId,
          " and Num = ", facts.Field("Fact_Num"));
  if (pool.Eof()) return false;
  const Value glossary = pool.Field("Glossary");
  if (!glossary.IsNull()) ReadPath(Joined(glossary));
  return true;
}

void PathPruning::ReadPath(const std::string& glossary) {
  const std::size_t first = Find(glossary, " ");
  const std::size_t second = Find(glossary, " ", first + 1);
  if (first > 0 && second > first) linkId_ = WordWithoutLetter(glossary, first, second);
  const std::size_t third = Find(glossary, " ", second + 1);
  const std::size_t lineEnd = Find(glossary, kCrLf, third + 1);
  if (third > 0 && lineEnd > third) {
    junctionDigits_ = WordWithoutLetter(glossary, third, lineEnd);
  }
}

void PathPruning::FindStopJunction() {
  Recordset junction = Ask(
      state_.gMspConn.get(),
      "Select * from junctions_in_scenario where Msp_ProjID = ", state_.gMspProjId,
      " and scenario_num = ", state_.currentScenarioNum, " and ID = '", "J", junctionDigits_, "'");
  if (!junction.Eof()) state_.stopJunctionNum = ToInt16(junction.Field("num"));
}

Recordset PathPruning::ActivityHere(const Value& useNum) {
  return Ask(state_.gMspConn.get(),
             "Select * from activity_in_scenario where Msp_ProjID = ", state_.gMspProjId,
             " and scenario_num = ", state_.currentScenarioNum, " and Use_Num = ", useNum);
}

// True for a UOB, which is on the work list then. The walk behind a junction is done at once.
bool PathPruning::LeaveOut(Recordset& activity, const Value& destination) {
  if (!activity.Eof()) {
    activity.SetField("Processed", 1);
    activity.SetField("Send_to_Project", 0);
    activity.Update();
    return true;
  }
  if (Equal(destination, state_.stopJunctionNum)) return false;
  Recordset junction =
      Ask(state_.gMspConn.get(),
          "Select * from junctions_in_scenario where Msp_ProjID = ", state_.gMspProjId,
          " and scenario_num = ", state_.currentScenarioNum, " and Num = ", destination);
  if (junction.Eof()) return false;
  StartJunctionQueue(state_, Joined(destination));
  ExcludeBehindJunction(state_);
  return false;
}

void PathPruning::RunWorkList() {
  for (int rounds = 0;; ++rounds) {
    Recordset marked =
        Ask(state_.gMspConn.get(),
            "Select * from Activity_in_Scenario where Msp_ProjID = ", state_.gMspProjId,
            " and scenario_Num = ", state_.currentScenarioNum, " and Processed = 1");
    if (marked.Eof()) return;
    CheckRounds(rounds);
    marked.SetField("Processed", 0);
    marked.Update();
    FollowLinksOf(marked.Field("Use_Num"));
  }
}

void PathPruning::FollowLinksOf(const Value& useNum) {
  Recordset links = LinksFrom(state_, useNum);
  for (; !links.Eof(); links.MoveNext()) {
    const Value destination = links.Field("Destination_Num");
    Recordset activity = ActivityHere(destination);
    LeaveOut(activity, destination);
  }
}

// A UOB on a circle of links comes back for ever; no honest path needs so many rounds.
void PathPruning::CheckRounds(int rounds) {
  if (rounds < kRoundsForEachOccurrence) return;
  if (!occurrences_) {
    Recordset all =
        Ask(state_.gMspConn.get(),
            "Select * from Activity_in_Scenario where Msp_ProjID = ", state_.gMspProjId);
    occurrences_ = CountRows(all);
  }
  if (rounds / kRoundsForEachOccurrence >= *occurrences_) throw RunTimeError(kSubscriptOutOfRange);
}

namespace {

void ExcludeTask(ModelToProject& state, const Value& useNum) {
  Recordset task =
      Ask(state.gMspConn.get(), "Select * from MSP_TASKS where Proj_ID = ", state.gMspProjId,
          " and KV7_SCENARIO_HEX = ", state.currentScenarioNum, " and KV7_PROCOCC_HEX = ", useNum);
  if (task.Eof()) return;
  task.SetField("KV7_PROCOCC_SEND_TO_PROJECT", 0);
  task.Update();
  QueueJunction(state, Joined(task.Field("KV7_PROCOCC_HEX")));
}

}  // namespace

void ExcludeBehindJunction(ModelToProject& state) {
  for (std::size_t i = 0; i <= static_cast<std::size_t>(state.junctionQueueTop); ++i) {
    Recordset links = Ask(state.gMspConn.get(),
                          "Select * from Links_in_Scenario where Msp_ProjID = ", state.gMspProjId,
                          " and Scenario_Num = ", state.currentScenarioNum,
                          " and origin_Num = ", state.junctionQueue[i]);
    for (; !links.Eof(); links.MoveNext()) {
      const std::string type = Joined(links.Field("Destination_Type"));
      const Value destination = links.Field("Destination_Num");
      if (type == kProcessOccurrence) ExcludeTask(state, destination);
      if (type == kJunction && !Equal(destination, state.stopJunctionNum)) {
        QueueJunction(state, Joined(destination));
      }
    }
  }
}

}  // namespace merivane::translator
