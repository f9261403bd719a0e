#include "translation_steps.h"

namespace merivane::translator {

namespace {

// A fan-in and a fan-out are mirror images: where the branches stand, and which way leads on.
struct SyncSide {
  const char* cardinality;
  const char* suffix;
  const char* column;
  const char* nearEnd;  // of a link between junction and branch: the junction's end
  const char* branch;   // ... and the branch's
};

constexpr SyncSide kFinish = {"cardinality = 'Fan In' and Type = 'Sync. AND'", "FF", "FFRels",
                              "Destination_Num", "Origin_num"};
constexpr SyncSide kStart = {"cardinality = 'Fan Out' and Type = 'Sync. AND'", "SS", "SSRels",
                             "Origin_num", "Destination_Num"};

Recordset LinksAt(ModelToProject& state, const SyncSide& side, const Value& element) {
  return Ask(state.gMspConn.get(),
             "Select * from Links_in_Scenario where Msp_ProjID = ", state.gMspProjId, " and ",
             side.nearEnd, " = ", element);
}

// Judged by the branch's first link on its far side alone.
bool BehindOtherSyncAnd(ModelToProject& state, const SyncSide& side, const Value& branch) {
  Recordset links = LinksAt(state, side, branch);
  if (links.Eof()) return false;
  Recordset junction =
      Ask(state.gMspConn.get(),
          "Select * from junctions_in_Scenario where Msp_ProjID = ", state.gMspProjId,
          " and Num = ", links.Field(side.branch));
  return !junction.Eof() && Joined(junction.Field("Type")) == kSyncAnd;
}

// Use_Num of the UOB that carries the relations; 0 for none.
std::int32_t MainBranch(ModelToProject& state, const SyncSide& side, const Value& junctionNum) {
  Recordset links = LinksAt(state, side, junctionNum);
  for (; !links.Eof(); links.MoveNext()) {
    const Value branch = links.Field(side.branch);
    if (ActivityByUse(state, branch).Eof()) continue;
    if (!BehindOtherSyncAnd(state, side, branch)) return ToInt32(branch);
  }
  return 0;
}

std::string RelationsToOthers(ModelToProject& state, const SyncSide& side, const Value& junctionNum,
                              std::int32_t main) {
  std::string relations;
  Recordset links = LinksAt(state, side, junctionNum);
  for (; !links.Eof(); links.MoveNext()) {
    const Value branch = links.Field(side.branch);
    if (Equal(branch, main)) continue;
    Recordset activity = ActivityByUse(state, branch);
    if (activity.Eof()) continue;
    if (!relations.empty()) relations += ", ";
    relations += Joined(activity.Field("Project_ID")) + side.suffix;
  }
  return relations;
}

void BuildRelations(ModelToProject& state, const SyncSide& side) {
  Recordset junctions =
      Ask(state.gMspConn.get(),
          "Select * from junctions_in_scenario where Msp_ProjID = ", state.gMspProjId, " and ",
          side.cardinality);
  for (; !junctions.Eof(); junctions.MoveNext()) {
    const Value junctionNum = junctions.Field("Num");
    const std::int32_t main = MainBranch(state, side, junctionNum);
    if (main == 0) continue;
    const std::string relations = RelationsToOthers(state, side, junctionNum, main);
    if (relations.empty()) continue;
    Recordset activity = ActivityByUse(state, main);
    if (activity.Eof()) continue;
    activity.SetField(side.column, relations);
    activity.Update();
  }
}

}  // namespace

void BuildStartRelations(ModelToProject& state) { BuildRelations(state, kStart); }

void BuildFinishRelations(ModelToProject& state) { BuildRelations(state, kFinish); }

}  // namespace merivane::translator
