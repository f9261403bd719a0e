#include <optional>
#include <unordered_set>

#include "merge_statements.h"
#include "merge_steps.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

namespace {

// The kind of junctions that a walk follows, and its piece of the statement that asks for them.
struct FollowedJunctions {
  std::string_view word;
  std::string_view piece;
};

bool ReachesJunctionFrom(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  Recordset links = Ask(
      state.gInterimConn.get(),
      LinksWhere(state,
                 " AND Destination_Num = " + Joined(destination) + " and Origin_Num = ", origin));
  return HasRow(links) && TextIs(links.Field("Destination_Type"), kJunction);
}

std::optional<std::int16_t> JunctionOfKind(ProjectToModel& state, const Value& number,
                                           const FollowedJunctions& kind) {
  Recordset junctions = Ask(state.gInterimConn.get(), JunctionsWhere(state, kind.piece, number));
  if (!HasRow(junctions) || !Holds(Joined(junctions.Field("Type")), kind.word)) {
    return std::nullopt;
  }
  return ToInt16(junctions.Field("Num"));
}

bool LinkedThrough(ProjectToModel& state, std::int16_t origin, std::int16_t destination,
                   const FollowedJunctions& kind) {
  std::unordered_set<std::int16_t> passed;
  while (passed.insert(destination).second) {
    Recordset incoming =
        Ask(state.gInterimConn.get(), LinksWhere(state, " AND Destination_Num = ", destination));
    if (!HasRow(incoming)) {
      return false;
    }
    if (!TextIs(incoming.Field("Origin_Type"), kJunction)) {
      return ReachesJunctionFrom(state, origin, destination);
    }
    const auto junction = JunctionOfKind(state, incoming.Field("Origin_Num"), kind);
    if (!junction) {
      return false;
    }
    destination = *junction;
  }
  throw RunTimeError(kOutOfStackSpace);
}

enum class Links { kNoneIn, kNotDirect, kDirect };

// From both ends at once: a unit may have thousands of links on one side.
Links LinksBetween(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  Connection* database = state.gInterimConn.get();
  Recordset outgoing = Ask(database, LinksWhere(state, " and Origin_Num = ", origin));
  Recordset incoming = Ask(database, LinksWhere(state, " and Destination_Num = ", destination));
  if (incoming.Eof()) return Links::kNoneIn;
  const std::string from = Joined(origin);
  const std::string to = Joined(destination);
  for (; !outgoing.Eof() && !incoming.Eof(); outgoing.MoveNext(), incoming.MoveNext()) {
    if (Joined(outgoing.Field("Destination_Num")) == to) return Links::kDirect;
    if (Joined(incoming.Field("Origin_Num")) == from) return Links::kDirect;
  }
  return Links::kNotDirect;
}

}  // namespace

bool DirectLinkExists(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  return LinksBetween(state, origin, destination) == Links::kDirect;
}

bool IsLinked(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  const Links links = LinksBetween(state, origin, destination);
  return links != Links::kNoneIn &&
         (links == Links::kDirect ||
          LinkedThrough(state, origin, destination, {"OR", " and Num = "}) ||
          LinkedThrough(state, origin, destination, {"AND", " AND Num = "}));
}

bool AddDirectLink(ProjectToModel& state, std::int16_t origin, std::int16_t destination) {
  Recordset outgoing =
      Ask(state.gInterimConn.get(), LinksWhere(state, " AND Origin_Num = ", origin));
  if (HasRow(outgoing)) {
    return false;
  }
  Recordset incoming =
      Ask(state.gInterimConn.get(), LinksWhere(state, " AND Destination_Num = ", destination));
  if (HasRow(incoming)) {
    return false;
  }
  NumberCounter numbers(state);
  constexpr std::string_view kOccurrenceAndBlank = "Process-Occurrence ";
  AddLink(state, numbers,
          {.origin = origin,
           .destination = destination,
           .originType = kOccurrenceAndBlank,
           .destinationType = kOccurrenceAndBlank,
           .type = "Precedence"});
  numbers.WriteBack();
  return true;
}

void DropPlainIncomingLinks(ProjectToModel& state, std::int16_t destination) {
  Recordset links =
      Ask(state.gInterimConn.get(), LinksWhere(state, " AND Destination_num = ", destination));
  for (; !links.Eof(); links.MoveNext()) {
    Recordset junction = Ask(state.gInterimConn.get(),
                             JunctionsWhere(state, " AND Num = ", links.Field("Origin_Num")));
    // A link from a process has no junction: the set is empty, and reading its type fails.
    if ((junction.Eof() && !junction.Bof()) || !TextIs(junction.Field("Type"), kSyncAnd)) {
      links.Delete();
    }
  }
}

}  // namespace merivane::roundtrip
