#include "links_to_junctions.h"

#include <optional>
#include <string>

#include "runtime/conversions.h"

namespace merivane::neutraltext {

namespace {

constexpr const char* kPredecessor = "LINK_PRED_UID";
constexpr const char* kSuccessor = "LINK_SUCC_UID";
constexpr const char* kLinkUid = "LINK_UID";

std::string ProjectNumber(const ProjectToModel& state) {
  return std::to_string(state.gInterimProjId);
}

// Two of the three statements let the number touch AND.
std::string LinksBehind(const ProjectToModel& state, std::int16_t taskUid) {
  return "SELECT * FROM [MSP_LINKS] WHERE LINK_PRED_UID = " + std::to_string(taskUid) +
         "AND PROJ_ID = " + ProjectNumber(state) + " AND LINK_TYPE = 1";
}

std::string LinksAhead(const ProjectToModel& state, std::int16_t taskUid, const char* andProject) {
  return "SELECT * FROM [MSP_LINKS] WHERE LINK_SUCC_UID = " + std::to_string(taskUid) + andProject +
         ProjectNumber(state) + " AND LINK_TYPE = 1";
}

std::string LinksOfType(const ProjectToModel& state, const char* type) {
  return "SELECT * FROM [MSP_LINKS] WHERE PROJ_ID = " + ProjectNumber(state) +
         " AND LINK_TYPE = " + type;
}

// Whether two tasks start or finish together: the near ends of links are theirs, the far ends are
// what leads into them or follows them.
enum class Side { kStart, kFinish };

const std::vector<std::size_t>& LinksAt(const LinkTable& table, Side side, std::int16_t task) {
  return side == Side::kStart ? table.WithDestination(task) : table.WithOrigin(task);
}

std::int16_t FarEnd(const LinkRow& link, Side side) {
  return side == Side::kStart ? link.origin : link.destination;
}

bool MakeSync(JunctionTable& table, Side side, std::int16_t number) {
  return side == Side::kStart ? table.MakeFanOutSync(number) : table.MakeFanInSync(number);
}

// The junction that the last of the links at either task hangs on, 0 without one. Links that hang
// on anything else are deleted.
std::int16_t FindSyncJunction(ScenarioLinks& links, Side side, std::int16_t taskA,
                              std::int16_t taskB) {
  std::int16_t junction = 0;
  std::optional<std::size_t> last;
  for (std::int16_t task : {taskA, taskB}) {
    for (std::size_t i : LinksAt(links.linkTable, side, task)) {
      const std::int16_t far = FarEnd(links.linkTable.Row(i), side);
      if (!MakeSync(links.junctionTable, side, far)) {
        links.linkTable.Delete(i);
      } else if (!last || i > *last) {
        last = i;
        junction = far;
      }
    }
  }
  return junction;
}

std::optional<std::int16_t> LastDeletedEnd(const LinkTable& table, Side side, std::int16_t task) {
  std::optional<std::int16_t> end;
  for (std::size_t i : LinksAt(table, side, task)) {
    if (table.Row(i).deleted) end = FarEnd(table.Row(i), side);
  }
  return end;
}

void StartTogether(ProjectToModel& state, ScenarioLinks& links, std::int16_t taskA,
                   std::int16_t taskB) {
  std::int16_t& next = state.nextElementNum;
  LinkTable& table = links.linkTable;
  std::int16_t syncJunction = FindSyncJunction(links, Side::kStart, taskA, taskB);
  const std::int16_t originA = LastDeletedEnd(table, Side::kStart, taskA).value_or(0);
  const std::int16_t originB =
      taskA == taskB ? std::int16_t{0} : LastDeletedEnd(table, Side::kStart, taskB).value_or(0);
  if (syncJunction == 0) syncJunction = links.junctionTable.Add(next, kFanOut, kWrittenSyncAnd);
  if (originA != 0 && originB != 0) {
    const std::int16_t newFanIn = links.junctionTable.Add(next, kFanIn, kAsyncAnd);
    table.AddUnlessThere(next, originA, newFanIn);
    table.AddUnlessThere(next, originB, newFanIn);
    table.AddUnlessThere(next, newFanIn, syncJunction);
  } else if (originA != 0) {
    table.AddUnlessThere(next, originA, syncJunction);
  } else if (originB != 0) {
    table.AddUnlessThere(next, originB, syncJunction);
  }
  table.AddUnlessThere(next, syncJunction, taskA);
  table.AddUnlessThere(next, syncJunction, taskB);
}

// `destB` is handed from row to row: it keeps its value where this row finds none.
void FinishTogether(ProjectToModel& state, ScenarioLinks& links, std::int16_t taskA,
                    std::int16_t taskB, std::int16_t& destB) {
  std::int16_t& next = state.nextElementNum;
  LinkTable& table = links.linkTable;
  std::int16_t syncJunction = FindSyncJunction(links, Side::kFinish, taskA, taskB);
  const std::int16_t destA = LastDeletedEnd(table, Side::kFinish, taskA).value_or(0);
  if (taskA != taskB) destB = LastDeletedEnd(table, Side::kFinish, taskB).value_or(destB);
  if (syncJunction == 0) syncJunction = links.junctionTable.Add(next, kFanIn, kWrittenSyncAnd);
  if (destA != 0 && destB != 0) {
    const std::int16_t newFanOut = links.junctionTable.Add(next, kFanOut, kAsyncAnd);
    table.AddUnlessThere(next, newFanOut, destA);
    table.AddUnlessThere(next, newFanOut, destB);
    table.AddUnlessThere(next, syncJunction, newFanOut);
  } else if (destA != 0) {
    table.AddUnlessThere(next, syncJunction, destA);
  } else if (destB != 0) {
    table.AddUnlessThere(next, syncJunction, destB);
  }
  table.AddUnlessThere(next, taskA, syncJunction);
  table.AddUnlessThere(next, taskB, syncJunction);
}

}  // namespace

void AddFanInJunction(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links) {
  Recordset rows =
      AskStatic(state.gProjectConn.get(), LinksAhead(state, taskUid, " AND PROJ_ID = "));
  if (rows.RecordCount() < 2) return;
  std::int16_t& next = state.nextElementNum;
  const std::int16_t junction = links.junctionTable.Add(next, kFanIn, kAsyncAnd);
  links.linkTable.Add(next, junction, rows.Field(kSuccessor));
  for (; !rows.Eof(); rows.MoveNext()) {
    links.consumedLinks.Add(rows.Field(kLinkUid));
    links.linkTable.Add(next, rows.Field(kPredecessor), junction);
  }
}

void AddFanOutJunction(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links) {
  Recordset rows = AskStatic(state.gProjectConn.get(), LinksBehind(state, taskUid));
  if (rows.RecordCount() < 2) return;
  std::int16_t& next = state.nextElementNum;
  const std::int16_t junction = links.junctionTable.Add(next, kFanOut, kAsyncAnd);
  links.linkTable.Add(next, rows.Field(kPredecessor), junction);
  for (; !rows.Eof(); rows.MoveNext()) {
    links.consumedLinks.Add(rows.Field(kLinkUid));
    links.linkTable.Add(next, junction, rows.Field(kSuccessor));
  }
}

void AddPlainLink(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links) {
  Recordset behind = AskStatic(state.gProjectConn.get(), LinksBehind(state, taskUid));
  Recordset ahead =
      AskStatic(state.gProjectConn.get(), LinksAhead(state, taskUid, "AND PROJ_ID = "));
  const bool singleBehind = behind.RecordCount() == 1;
  if (!singleBehind && ahead.RecordCount() != 1) return;
  Recordset& row = singleBehind ? behind : ahead;
  ConsumedLinks& consumed = links.consumedLinks;
  if (!consumed.Empty() && consumed.Holds(row.Field(kLinkUid))) return;
  links.linkTable.Add(state.nextElementNum, row.Field(kPredecessor), row.Field(kSuccessor));
  consumed.Add(row.Field(kLinkUid));
}

void ResolveStartToStartLinks(ProjectToModel& state, ScenarioLinks& links) {
  Recordset rows = AskStatic(state.gProjectConn.get(), LinksOfType(state, "3"));
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::int16_t taskA = ToInt16(rows.Field(kPredecessor));
    const std::int16_t taskB = ToInt16(rows.Field(kSuccessor));
    StartTogether(state, links, taskA, taskB);
  }
}

void ResolveFinishToFinishLinks(ProjectToModel& state, ScenarioLinks& links) {
  Recordset rows = AskStatic(state.gProjectConn.get(), LinksOfType(state, "0"));
  std::int16_t destB = 0;
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::int16_t taskA = ToInt16(rows.Field(kPredecessor));
    const std::int16_t taskB = ToInt16(rows.Field(kSuccessor));
    FinishTogether(state, links, taskA, taskB, destB);
  }
}

}  // namespace merivane::neutraltext
