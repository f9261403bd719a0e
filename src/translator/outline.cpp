#include <algorithm>

#include "neutraltext/modGlobal.h"
#include "runtime/text.h"
#include "translation_steps.h"

namespace merivane::translator {

using namespace neutraltext;

namespace {

constexpr std::string_view kScenarios = "Select * from Scenario where Msp_ProjID = ";
constexpr std::size_t kUseNumDigits = 5;
constexpr std::ptrdiff_t kOrderCharacters = 50;
constexpr const char* kUnplaced = "99999";

constexpr const char* kTooManyUses =
    "Merivane curretly handles 99999 UOB IDs.  This file has UOB ID more than 99999 and some UOBs "
    "will be rearranged in the translation.";
constexpr const char* kTooDeep =
    "Merivane curretly handles 10 levels of hierarchy.  This file has more than 10 levels and some "
    "hierarchy information will be lost in the translation.";

void Warn(Desktop& desktop, const char* text) {
  desktop.ShowMessage({text, MessageIcon::kNone, "IDEF3 to Project 2000"});
}

void SetPlace(Recordset& activity, const Value& outline, const std::string& order) {
  activity.SetField("outline", outline);
  activity.SetField("p_Order", order);
}

int CountScenarios(ModelToProject& state, std::string_view condition) {
  Recordset scenarios = Ask(state.gMspConn.get(), kScenarios, state.gMspProjId, condition);
  return CountRows(scenarios);
}

void PlaceDecompositions(Pass& pass, const Value& useNum, int depth) {
  if (useNum.IsNull() || !IsDecomposed(pass, useNum)) return;
  ModelToProject& state = pass.state;
  Recordset decompositions =
      Ask(state.gMspConn.get(), kScenarios, state.gMspProjId, " and Parent_num = ", useNum);
  for (; !decompositions.Eof(); decompositions.MoveNext()) {
    decompositions.SetField("Project_Order", depth);
  }
}

void PlaceChildrenOf(Pass& pass, int depth) {
  ModelToProject& state = pass.state;
  Recordset scenarios = Ask(state.gMspConn.get(), kScenarios, state.gMspProjId,
                            " and Project_order = ", Value(depth));
  for (; !scenarios.Eof(); scenarios.MoveNext()) {
    Recordset activities = ActivitiesOfScenario(state, scenarios.Field("Num"));
    for (; !activities.Eof(); activities.MoveNext()) {
      PlaceDecompositions(pass, activities.Field("Use_Num"), depth + 1);
    }
  }
}

void OutlineTopActivity(ModelToProject& state, Recordset& activity) {
  std::string useNum = Joined(activity.Field("Use_Num"));
  if (useNum.size() <= kUseNumDigits) {
    PadToFiveDigits(useNum);
    SetPlace(activity, 1, useNum);
  } else {
    SetPlace(activity, 1, kUnplaced);
    Warn(state.desktop, kTooManyUses);
  }
}

void OutlineNestedActivity(ModelToProject& state, Recordset& activity, Recordset& parent) {
  std::string useNum = Joined(activity.Field("Use_Num"));
  if (useNum.empty() || useNum.size() > kUseNumDigits) {
    SetPlace(activity, 1, kUnplaced);
    Warn(state.desktop, kTooManyUses);
    return;
  }
  PadToFiveDigits(useNum);
  const std::string order = Joined(parent.Field("p_order")) + useNum;
  if (order.size() > static_cast<std::size_t>(kOrderCharacters)) {
    Warn(state.desktop, kTooDeep);
    SetPlace(activity, 1, Left(order, kOrderCharacters));
    return;
  }
  Value level = parent.Field("outline");
  if (!level.IsNull()) level = ToInt32(level) + 1;
  SetPlace(activity, level, order);
}

void OutlineScenario(ModelToProject& state, Recordset& scenario) {
  Recordset activities = ActivitiesOfScenario(state, scenario.Field("Num"));
  const Value parentNum = scenario.Field("Parent_Num");
  const bool top = Equal(parentNum, 0);
  Recordset parent;
  if (!top) parent = ActivityByUse(state, parentNum);
  for (; !activities.Eof(); activities.MoveNext()) {
    if (top) {
      OutlineTopActivity(state, activities);
    } else if (parent.Eof()) {
      SetPlace(activities, 1, kUnplaced);
    } else {
      OutlineNestedActivity(state, activities, parent);
    }
    activities.Update();
  }
}

}  // namespace

bool IsDecomposed(Pass& pass, const Value& useNum) {
  auto& decomposed = pass.memory.decomposed;
  if (!decomposed) {
    decomposed.emplace();
    Recordset scenarios = Ask(pass.state.gMspConn.get(), kScenarios, pass.state.gMspProjId);
    for (; !scenarios.Eof(); scenarios.MoveNext()) {
      const Value parent = scenarios.Field("Parent_Num");
      if (!parent.IsNull()) decomposed->insert(ToInt32(parent));
    }
  }
  return decomposed->contains(ToInt32(useNum));
}

void OrderScenarios(Pass& pass) {
  ModelToProject& state = pass.state;
  const int all = CountScenarios(state, "");
  Recordset top = Ask(state.gMspConn.get(), kScenarios, state.gMspProjId, " and Parent_num = 0");
  for (; !top.Eof(); top.MoveNext()) {
    top.SetField("Project_Order", 0);
    top.Update();
  }
  top.Close();
  const int deepest = std::min(CountScenarios(state, " and Project_order = 9999"), all);
  for (int depth = 0; depth <= deepest; ++depth) PlaceChildrenOf(pass, depth);
}

void BuildOutline(Pass& pass) {
  ModelToProject& state = pass.state;
  OrderScenarios(pass);
  Recordset scenarios =
      Ask(state.gMspConn.get(), kScenarios, state.gMspProjId, " Order By Project_Order");
  for (; !scenarios.Eof(); scenarios.MoveNext()) OutlineScenario(state, scenarios);
}

}  // namespace merivane::translator
