
#include "merge_statements.h"
#include "merge_steps.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

bool IsAnd(const Value& type) { return TextIs(type, kSyncAnd) || TextIs(type, kAsyncAnd); }

// Whether the set stands on an AND junction of that cardinality.
bool IsAndOf(Recordset& junction, std::string_view cardinality) {
  return HasRow(junction) && IsAnd(junction.Field("Type")) &&
         TextIs(junction.Field("Cardinality"), cardinality);
}

bool HasIncomingLink(ProjectToModel& state, std::int16_t number) {
  Recordset links =
      Ask(state.gInterimConn.get(), LinksWhere(state, " AND Destination_Num = ", number));
  return HasRow(links);
}

struct LinkEnd {
  std::int16_t number = 0;
  bool isFree = false;  // no link touches it on this side
};

// The end from which the new link of `origin` leaves.
LinkEnd LeavingEnd(ProjectToModel& state, NumberCounter& numbers, std::int16_t origin) {
  Recordset link = Ask(state.gInterimConn.get(), LinksWhere(state, " AND Origin_Num = ", origin));
  if (!HasRow(link)) {
    return {.number = origin, .isFree = true};
  }
  Recordset junction = Ask(state.gInterimConn.get(),
                           JunctionsWhere(state, " AND Num = ", link.Field("Destination_Num")));
  if (IsAndOf(junction, kFanOut)) {
    return {.number = ToInt16(junction.Field("Num"))};
  }
  const std::int16_t fanOut = AddJunction(state, numbers, kFanOut, kAsyncAnd);
  const std::int16_t destination = ToInt16(link.Field("Destination_Num"));
  RepointDestination(link, fanOut);
  AddLinkBetween(state, numbers, fanOut, destination);
  return {.number = fanOut};
}

// Puts a new fan-in into the link, and gives its number.
std::int16_t FanInBehind(ProjectToModel& state, NumberCounter& numbers, Recordset& link) {
  const std::int16_t fanIn = AddJunction(state, numbers, kFanIn, kAsyncAnd);
  const std::int16_t origin = ToInt16(link.Field("Origin_Num"));
  RepointOrigin(link, fanIn);
  const bool fromJunction = IsJunction(state, origin);
  AddLink(state, numbers,
          {.origin = origin,
           .destination = fanIn,
           .originType = fromJunction ? kJunction : kProcessOccurrence,
           .destinationType = kJunction,
           .originTypeColumn = fromJunction ? "Origin_Type" : "Orgin_Type"});
  return fanIn;
}

// The end at which the new link to `destination` arrives.
LinkEnd ArrivingEnd(ProjectToModel& state, NumberCounter& numbers, std::int16_t destination) {
  Recordset link =
      Ask(state.gInterimConn.get(), LinksWhere(state, " AND Destination_Num = ", destination));
  if (!HasRow(link)) {
    return {.number = destination, .isFree = true};
  }
  Recordset junction =
      Ask(state.gInterimConn.get(), JunctionsWhere(state, " AND Num = ", link.Field("Origin_Num")));
  if (HasRow(junction)) {
    const std::int16_t number = ToInt16(junction.Field("Num"));
    if (IsAndOf(junction, kFanIn) || !HasIncomingLink(state, number)) {
      return {.number = number};
    }
  }
  return {.number = FanInBehind(state, numbers, link)};
}

// Puts a new fan-out into the predecessor's link and links it to gDestinationUse.
void AttachThroughFanOut(ProjectToModel& state, NumberCounter& numbers, Recordset& link) {
  const std::int16_t fanOut = AddJunction(state, numbers, kFanOut, kAsyncAnd);
  const std::int16_t destination = ToInt16(link.Field("Destination_Num"));
  RepointDestination(link, fanOut);
  AddLinkBetween(state, numbers, fanOut, destination);
  AddLinkBetween(state, numbers, fanOut, state.gDestinationUse);
}

}  // namespace

void ConnectThroughJunctions(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  NumberCounter numbers(state);
  const LinkEnd leaving = LeavingEnd(state, numbers, origin);
  const LinkEnd arriving = ArrivingEnd(state, numbers, destination);
  // The links are asked for only where neither end is free: a junction may have thousands.
  const bool linked = leaving.number == arriving.number ||
                      (!leaving.isFree && !arriving.isFree &&
                       DirectLinkExists(state, leaving.number, arriving.number));
  if (!linked) {
    AddLinkBetween(state, numbers, leaving.number, arriving.number);
  }
  numbers.WriteBack();
}

void AddFanInForPredecessors(ProjectToModel& state, Recordset& task) {
  NumberCounter numbers(state);
  const std::int16_t fanIn = AddJunction(state, numbers, kFanIn, kAsyncAnd);
  state.gDestinationUse = fanIn;
  const Value occurrence = task.Field("Text1");
  Recordset link =
      Ask(state.gInterimConn.get(), LinksWhere(state, " AND Destination_Num = ", occurrence));
  if (HasRow(link)) {
    const std::int16_t origin = ToInt16(link.Field("Origin_Num"));
    RepointOrigin(link, fanIn);
    AddLinkBetween(state, numbers, origin, fanIn);
  } else {
    AddLink(state, numbers,
            {.origin = fanIn,
             .destination = ToInt16(occurrence),
             .originType = kJunction,
             .destinationType = "Process_Occurrence"});
  }
  numbers.WriteBack();
}

void AttachNewPredecessors(ProjectToModel& state) {
  NumberCounter numbers(state);
  for (const std::int16_t predecessor : state.gNewPredecessors) {
    state.gOriginUse = predecessor;
    Recordset link =
        Ask(state.gInterimConn.get(), LinksWhere(state, " AND Origin_Num = ", predecessor));
    if (HasRow(link)) {
      AttachThroughFanOut(state, numbers, link);
    } else {
      AddLinkBetween(state, numbers, predecessor, state.gDestinationUse);
    }
  }
  numbers.WriteBack();
}

}  // namespace merivane::roundtrip
