#include <limits>
#include <map>
#include <set>
#include <vector>

#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "translation_steps.h"
#include "translator/multi.h"

namespace merivane::translator {

namespace {

// Compares the facts from the set's position on; a fact "Choose " and the scenario's name chooses.
bool FactChooses(ModelToProject& state, Recordset& facts, Recordset& scenario) {
  const std::string name = Joined(scenario.Field("name"));
  for (; !facts.Eof(); facts.MoveNext()) {
    if (EqualNoCase(Joined(facts.Field("name")), "Choose " + name)) {
      state.chosenName = name;
      return true;
    }
  }
  return false;
}

void OpenFacts(ModelToProject& state, Recordset& facts) {
  facts.OpenDynamic(
      "select * from Fact_Pool where Msp_ProjID = " + std::to_string(state.gMspProjId),
      state.gMspConn.get());
}

void AskUser(ModelToProject& state, const std::string& found, const std::string& request,
             Recordset& scenarios) {
  multi form(state.desktop, state.chosenName);
  form.Label1 = found;
  form.Label2 = request;
  for (scenarios.MoveFirst(); !scenarios.Eof(); scenarios.MoveNext()) {
    form.List1.push_back(Joined(scenarios.Field("Name")));
  }
  state.desktop.ShowModal(form);
}

void ExcludeOthers(ModelToProject& state, Recordset& scenarios) {
  for (scenarios.MoveFirst(); !scenarios.Eof(); scenarios.MoveNext()) {
    if (Joined(scenarios.Field("Name")) != state.chosenName) {
      ExcludeScenario(state, scenarios.Field("Num"));
    }
  }
}

// Leaves the set on its last row where it has several, so that only that row meets the facts.
bool StandsOnLastOfSeveral(Recordset& scenarios) {
  if (CountRows(scenarios) < 2) return false;
  scenarios.MoveLast();
  return true;
}

void ChooseTopScenario(ModelToProject& state, Recordset& facts) {
  Recordset tops =
      Ask(state.gMspConn.get(), "Select * from Scenario where Msp_ProjID = ", state.gMspProjId,
          " and Parent_Num = 0");
  if (!StandsOnLastOfSeveral(tops)) return;
  bool undecided = true;
  for (; !tops.Eof(); tops.MoveNext()) {
    OpenFacts(state, facts);
    undecided = undecided && !FactChooses(state, facts, tops);
    facts.Close();
  }
  if (undecided) {
    AskUser(state, "Multiple scenarios found.", "Please select the scenario to translate:", tops);
  }
  ExcludeOthers(state, tops);
}

void AskForDecomposition(ModelToProject& state, const Value& parentNum, Recordset& group) {
  Recordset parent = ActivityByUse(state, parentNum);
  if (parent.Eof() || Equal(parent.Field("send_to_Project"), 0)) return;
  const Value name = parent.Field("Name");
  const std::string shown = Joined(name.IsNull() ? parent.Field("Use_Num") : name);
  AskUser(state, "Multiple decompositions found for " + shown + ".",
          "Please select the decomposition to use:", group);
}

// False where the group has one scenario at most: it never has more again. `facts` stays open once
// a group had to be decided, so that a second such group fails.
bool ChooseDecomposition(ModelToProject& state, const Value& parentNum, Recordset& facts) {
  Recordset group =
      Ask(state.gMspConn.get(), "Select * from Scenario where Msp_ProjID = ", state.gMspProjId,
          " and send_to_project = 1 and parent_num = ", parentNum);
  if (!StandsOnLastOfSeveral(group)) return false;
  OpenFacts(state, facts);
  bool undecided = true;
  for (; !group.Eof(); group.MoveNext()) {
    undecided = undecided && !FactChooses(state, facts, group);
  }
  if (undecided) AskForDecomposition(state, parentNum, group);
  ExcludeOthers(state, group);
  return true;
}

// Takes one scenario out of the plan; gives the numbers of the scenarios right below it.
std::vector<Value> TakeOut(ModelToProject& state, const Value& number) {
  std::vector<Value> children;
  Recordset activities = ActivitiesOfScenario(state, number);
  for (; !activities.Eof(); activities.MoveNext()) {
    Recordset decompositions =
        Ask(state.gMspConn.get(), "Select * from Scenario where Msp_ProjID = ", state.gMspProjId,
            " and Parent_num = ", activities.Field("Use_Num"));
    for (; !decompositions.Eof(); decompositions.MoveNext()) {
      children.push_back(decompositions.Field("Num"));
    }
    activities.SetField("send_to_project", 0);
    activities.Update();
  }
  Recordset scenario =
      Ask(state.gMspConn.get(), "Select * from Scenario where Msp_ProjID = ", state.gMspProjId,
          " and num = ", number);
  scenario.SetField("Send_To_Project", 0);
  scenario.Update();
  return children;
}

}  // namespace

// In a circle of decompositions scenarios come back until the list is full; their children are
// looked up once.
void ExcludeScenario(ModelToProject& state, const Value& scenarioNum) {
  constexpr std::size_t kMostScenarios = std::numeric_limits<std::int16_t>::max();
  std::map<std::string, std::vector<Value>> children;
  std::vector<Value> numbers = {scenarioNum};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto [entry, isNew] = children.try_emplace(Joined(numbers[i]));
    if (isNew) entry->second = TakeOut(state, numbers[i]);
    for (const Value& child : entry->second) {
      if (numbers.size() == kMostScenarios) throw RunTimeError(kOverflow);
      numbers.push_back(child);
    }
  }
}

void ChooseScenarios(ModelToProject& state) {
  Recordset facts;
  ChooseTopScenario(state, facts);
  Recordset scenarios =
      Ask(state.gMspConn.get(), "Select * from Scenario where Msp_ProjID = ", state.gMspProjId,
          " and send_to_project = 1");
  std::set<std::string> decided;  // parents
  for (; !scenarios.Eof(); scenarios.MoveNext()) {
    const Value parentNum = scenarios.Field("Parent_Num");
    if (decided.contains(Joined(parentNum))) continue;
    if (!ChooseDecomposition(state, parentNum, facts)) decided.insert(Joined(parentNum));
  }
}

}  // namespace merivane::translator
