#include <optional>
#include <string>

#include "runtime/conversions.h"
#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

constexpr const char* kPredecessor = "LINK_PRED_UID";
constexpr const char* kSuccessor = "LINK_SUCC_UID";
constexpr const char* kLinkUid = "LINK_UID";

std::string ProjectNumber(const ProjectToModel& state) {
  return std::to_string(state.gInterimProjId);
}

std::string LinksOfType(const ProjectToModel& state, const char* type) {
  return "SELECT * FROM [MSP_LINKS] WHERE PROJ_ID = " + ProjectNumber(state) +
         " AND LINK_TYPE = " + type;
}

// One side of tasks. What is done in front of them and behind them mirrors each other: the near
// ends of links are the tasks', the far ends are what leads into them or follows them.
struct TaskSide {
  bool isInFront;
  const char* nearColumn;
  const char* farColumn;
  std::string_view plainJunction;  // cardinality where one task has several links
  std::string_view syncJunction;   // where two tasks start or finish together

  std::int16_t FarEnd(const LinkRow& link) const {
    return isInFront ? link.origin : link.destination;
  }
  const std::vector<std::size_t>& LinksAt(const LinkTable& table, std::int16_t task) const {
    return isInFront ? table.WithDestination(task) : table.WithOrigin(task);
  }
};

constexpr TaskSide kInFront = {true, kSuccessor, kPredecessor, kFanIn, kFanOut};
constexpr TaskSide kBehind = {false, kPredecessor, kSuccessor, kFanOut, kFanIn};

// The finish-to-start rows of a task on that side. `andProject` may let the number touch AND.
std::string LinksOfTask(const ProjectToModel& state, const TaskSide& side, std::int16_t taskUid,
                        const char* andProject = "AND PROJ_ID = ") {
  return std::string("SELECT * FROM [MSP_LINKS] WHERE ") + side.nearColumn + " = " +
         std::to_string(taskUid) + andProject + ProjectNumber(state) + " AND LINK_TYPE = 1";
}

void AddLink(ProjectToModel& state, LinkTable& table, const TaskSide& side, const Value& farEnd,
             const Value& nearEnd) {
  table.Add(state.nextElementNum, side.isInFront ? farEnd : nearEnd,
            side.isInFront ? nearEnd : farEnd);
}

void AddLinkUnlessThere(ProjectToModel& state, LinkTable& table, const TaskSide& side,
                        std::int16_t farEnd, std::int16_t nearEnd) {
  table.AddUnlessThere(state.nextElementNum, side.isInFront ? farEnd : nearEnd,
                       side.isInFront ? nearEnd : farEnd);
}

// Gives the number of the links that the statement finds.
long AddPlainJunction(ProjectToModel& state, ScenarioLinks& links, const TaskSide& side,
                      const std::string& sql) {
  Recordset rows = AskStatic(state.gProjectConn.get(), sql);
  const long count = rows.RecordCount();
  if (count < 2) return count;
  const std::int16_t junction =
      links.junctionTable.Add(state.nextElementNum, side.plainJunction, kAsyncAnd);
  AddLink(state, links.linkTable, side, junction, rows.Field(side.nearColumn));
  for (; !rows.Eof(); rows.MoveNext()) {
    links.consumedLinks.Add(rows.Field(kLinkUid));
    AddLink(state, links.linkTable, side, rows.Field(side.farColumn), junction);
  }
  return count;
}

// The junction that the last of the links at either task hangs on, 0 without one. Links that hang
// on anything else are deleted.
std::int16_t FindSyncJunction(ScenarioLinks& links, const TaskSide& side, std::int16_t taskA,
                              std::int16_t taskB) {
  std::int16_t junction = 0;
  std::optional<std::size_t> last;
  for (std::int16_t task : {taskA, taskB}) {
    for (std::size_t i : side.LinksAt(links.linkTable, task)) {
      const std::int16_t far = side.FarEnd(links.linkTable.Row(i));
      if (!links.junctionTable.MakeSync(far, side.syncJunction)) {
        links.linkTable.Delete(i);
      } else if (!last || i > *last) {
        last = i;
        junction = far;
      }
    }
  }
  return junction;
}

std::optional<std::int16_t> LastDeletedEnd(const LinkTable& table, const TaskSide& side,
                                           std::int16_t task) {
  std::optional<std::int16_t> end;
  for (std::size_t i : side.LinksAt(table, task)) {
    if (table.Row(i).deleted) end = side.FarEnd(table.Row(i));
  }
  return end;
}

// Hangs two tasks on one "Sync. And" junction and what was at them on its other side. `farB` keeps
// its value where B has lost no link.
void Synchronise(ProjectToModel& state, ScenarioLinks& links, const TaskSide& side,
                 std::int16_t taskA, std::int16_t taskB, std::int16_t& farB) {
  std::int16_t& next = state.nextElementNum;
  JunctionTable& junctions = links.junctionTable;
  const auto link = [&](std::int16_t farEnd, std::int16_t nearEnd) {
    AddLinkUnlessThere(state, links.linkTable, side, farEnd, nearEnd);
  };
  std::int16_t sync = FindSyncJunction(links, side, taskA, taskB);
  const std::int16_t farA = LastDeletedEnd(links.linkTable, side, taskA).value_or(0);
  if (taskA != taskB) farB = LastDeletedEnd(links.linkTable, side, taskB).value_or(farB);
  if (sync == 0) sync = junctions.Add(next, side.syncJunction, kWrittenSyncAnd);
  if (farA != 0 && farB != 0) {
    const std::int16_t plain = junctions.Add(next, side.plainJunction, kAsyncAnd);
    link(farA, plain);
    link(farB, plain);
    link(plain, sync);
  } else if (farA != 0) {
    link(farA, sync);
  } else if (farB != 0) {
    link(farB, sync);
  }
  link(sync, taskA);
  link(sync, taskB);
}

}  // namespace

LinksAtTask AddFanJunctions(ProjectToModel& state, std::int16_t taskUid, ScenarioLinks& links) {
  const long inFront = AddPlainJunction(state, links, kInFront,
                                        LinksOfTask(state, kInFront, taskUid, " AND PROJ_ID = "));
  const long behind = AddPlainJunction(state, links, kBehind, LinksOfTask(state, kBehind, taskUid));
  return {taskUid, inFront, behind};
}

void AddPlainLink(ProjectToModel& state, const LinksAtTask& task, ScenarioLinks& links) {
  if (task.behind != 1 && task.inFront != 1) return;
  const TaskSide& side = task.behind == 1 ? kBehind : kInFront;
  Recordset row = AskStatic(state.gProjectConn.get(), LinksOfTask(state, side, task.taskUid));
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
    std::int16_t originB = 0;
    Synchronise(state, links, kInFront, taskA, taskB, originB);
  }
}

void ResolveFinishToFinishLinks(ProjectToModel& state, ScenarioLinks& links) {
  Recordset rows = AskStatic(state.gProjectConn.get(), LinksOfType(state, "0"));
  std::int16_t destB = 0;  // handed from row to row
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::int16_t taskA = ToInt16(rows.Field(kPredecessor));
    const std::int16_t taskB = ToInt16(rows.Field(kSuccessor));
    Synchronise(state, links, kBehind, taskA, taskB, destB);
  }
}

}  // namespace merivane::neutraltext
