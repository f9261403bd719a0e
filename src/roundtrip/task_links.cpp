#include "task_links.h"

#include "merge_statements.h"
#include "predecessors.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

void OpenLinksInto(ProjectToModel& state, const Value& end, Recordset& links) {
  links.OpenDynamic(LinksWhere(state, " AND Destination_Num = ", end), state.gInterimConn.get());
}

void RemoveIncomingLink(ProjectToModel& state, std::int16_t task) {
  Recordset links;
  OpenLinksInto(state, task, links);
  if (!HasRow(links)) return;
  if (TextIs(links.Field("Origin_Type"), kJunction)) {
    Recordset linksOfJunction;
    OpenLinksInto(state, links.Field("Origin_Num"), linksOfJunction);
    if (!HasRow(linksOfJunction)) return;
  }
  links.Delete();
}

}  // namespace

void MergeLinksOfTask(ProjectToModel& state, Recordset& task, MergeListener* listener) {
  if (listener) listener->OnTask(MergeStep::kLinks, task.Field("PID"));
  state.progress.Step();
  const std::int16_t count = CountPredecessors(task.Field("Predecessor"));
  if (count > 1) {
    ApplySeveralPredecessors(state, task);
  } else if (count == 1) {
    ApplySinglePredecessor(state, task);
  } else if (const Value text1 = task.Field("Text1"); !IsBlank(text1)) {
    if (const std::int16_t number = ToInt16(text1); number != 0) RemoveIncomingLink(state, number);
  }
}

}  // namespace merivane::roundtrip
