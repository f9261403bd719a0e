#include <cstdint>
#include <string_view>

#include "merge_statements.h"
#include "merge_steps.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

// Words of the rules, for a pair that finishes together and one that starts together:
//   join        "Fan In" of type "Sync. AND"; "Fan Out" of that type
//   side link   a task's first link out; its first link in
//   far end     of a link, the end that is away from the tasks: its destination; its origin
//   opposite    "Fan Out" of type "Sync. AND"; "Fan In" of that type
//   branch      "Fan Out" of type "Async. AND"; "Fan In" of that type

// When the junction at a link's far end counts as found.
enum class FoundCheck {
  kHasRow,              // neither EOF nor BOF
  kNotEndWithoutStart,  // unless EOF and not BOF: an empty set counts, and reading it fails
};

// How a task comes to a join that the other one is on.
struct BringRules {
  // Asks for the link on the join's far side; with `farSideOfTask` for the task's number instead
  // of the join's. The row found is also the one that a branch replaces.
  std::string_view farSidePiece;
  bool farSideOfTask = false;
  // The link between task and join, where the join has no link on its far side yet, has a
  // junction's type in the column DestinationType.
  bool oddColumnOfFirstLinks = false;
  // The branch's type in its link with the join's former far end; empty: as looked up.
  std::string_view branchType = {};
  // The type of the join's former far end is that of the far end of the task's old link.
  bool formerEndTypeOfOther = false;
};

// Where the join lies, seen from the tasks.
struct JoinSide {
  bool behindTasks = true;  // the tasks are origins of its links; else their destinations
  std::string_view farEndColumn;
  std::string_view joinCardinality;
  std::string_view branchCardinality;  // the opposite's too
};

struct JoinRules {
  JoinSide side;
  // Pieces of the statements, straight behind the scenario's number.
  std::string_view sideLinkPiece;
  std::string_view junctionPiece;
  FoundCheck firstCheck = FoundCheck::kHasRow;   // for X
  FoundCheck secondCheck = FoundCheck::kHasRow;  // for Y
  // The cardinality alone makes a join; its type is then set.
  bool joinByCardinality = false;
  // Y loses its first incoming link before its side link is looked at.
  bool dropsIncomingOfSecond = false;
  // The far end of Y's deleted side link goes behind a new join that X had no link to give to; a
  // junction's type there stands in the column DestinationType.
  bool keepsFarEndOfSecond = false;
  // The link of X with a new join, where X has no side link, has a junction's type in the column
  // DestinationType.
  bool oddColumnOfNewJoin = false;
  // The link of X with a new join, where X has a side link left, writes its origin's type to a
  // record set that isn't open, and fails.
  bool newJoinFailsOnSideLink = false;
  // In that case, the type of the side link's far end is that of X.
  bool farEndTypeOfFirst = false;
  BringRules second;  // Y to the join of X, or to the new one
  BringRules first;   // X to the join of Y
};

constexpr JoinSide kFinishes = {.behindTasks = true,
                                .farEndColumn = "Destination_Num",
                                .joinCardinality = kFanIn,
                                .branchCardinality = kFanOut};
constexpr JoinSide kStarts = {.behindTasks = false,
                              .farEndColumn = "Origin_Num",
                              .joinCardinality = kFanOut,
                              .branchCardinality = kFanIn};

constexpr std::string_view kFromJoin = " AND Origin_Num = ";
constexpr std::string_view kIntoJoin = " AND Destination_Num = ";

constexpr JoinRules kJoinFinishes = {
    .side = kFinishes,
    .sideLinkPiece = " AND origin_num = ",
    .junctionPiece = " AND Num = ",
    .firstCheck = FoundCheck::kNotEndWithoutStart,
    .secondCheck = FoundCheck::kHasRow,
    .dropsIncomingOfSecond = true,
    .keepsFarEndOfSecond = true,
    .second = {.farSidePiece = kFromJoin},
    .first = {.farSidePiece = " AND Origin_num = ", .farSideOfTask = true},
};

// No blank parts the scenario's number from the pieces. A link statement runs all the same, a
// junction statement is malformed, so that this routine ends wherever it has to look at a junction.
constexpr JoinRules kJoinStarts = {
    .side = kStarts,
    .sideLinkPiece = "AND destination_num = ",
    .junctionPiece = "Num = ",
    .firstCheck = FoundCheck::kHasRow,
    .secondCheck = FoundCheck::kNotEndWithoutStart,
    .dropsIncomingOfSecond = true,
    .oddColumnOfNewJoin = true,
    .second = {.farSidePiece = kIntoJoin, .oddColumnOfFirstLinks = true},
    .first = {.farSidePiece = kIntoJoin},
};

constexpr JoinRules kJoinFinishesByTask = {
    .side = kFinishes,
    .sideLinkPiece = " AND Origin_Num = ",
    .junctionPiece = " AND Num = ",
    .firstCheck = FoundCheck::kHasRow,
    .secondCheck = FoundCheck::kNotEndWithoutStart,
    .joinByCardinality = true,
    .newJoinFailsOnSideLink = true,
    .second = {.farSidePiece = kFromJoin, .branchType = kProcessOccurrence},
    .first = {.farSidePiece = " AND Orgin_Num = ", .branchType = kJunction},
};

constexpr JoinRules kJoinStartsByTask = {
    .side = kStarts,
    .sideLinkPiece = " AND destination_num = ",
    .junctionPiece = " AND Num = ",
    .firstCheck = FoundCheck::kHasRow,
    .secondCheck = FoundCheck::kNotEndWithoutStart,
    .farEndTypeOfFirst = true,
    .second = {.farSidePiece = kIntoJoin},
    .first = {.farSidePiece = kIntoJoin, .formerEndTypeOfOther = true},
};

// One run of the algorithm, over occurrence numbers.
class SynchronisedJoin {
 public:
  SynchronisedJoin(ProjectToModel& state, const JoinRules& rules, std::int16_t first,
                   std::int16_t second);
  void Run();

 private:
  // How a link departs from both ends' types as looked up.
  struct LinkTypes {
    std::string_view nearType = {};  // empty: as looked up
    std::string_view farType = {};
    bool oddDestinationColumn = false;  // of a junction
  };

  Recordset LinksOf(std::string_view piece, std::int16_t number);
  Recordset JunctionOf(const Value& number);
  std::int16_t FarEnd(Recordset& link);
  // Adds a link between the end on the tasks' side and the other one.
  void Link(std::int16_t nearEnd, std::int16_t farEnd, const LinkTypes& types);
  void Link(std::int16_t nearEnd, std::int16_t farEnd) { Link(nearEnd, farEnd, LinkTypes{}); }

  // True when the task's side link ends in a join, which join_ then takes. Any other side link is
  // deleted; the far end of that goes into `farEnd` where the caller asks for it.
  bool FindJoin(std::int16_t task, FoundCheck check, std::int16_t* farEnd);
  bool IsJoin(Recordset& junction);
  bool IsOpposite(Recordset& junction);
  void DropIncomingLink(std::int16_t task);
  void PutOnNewJoin(std::int16_t task, std::int16_t farEndOfOther);
  void MoveToNewJoin(std::int16_t task, Recordset& sideLink);
  void BringToJoin(std::int16_t task, const BringRules& rules);
  void AttachFarEnd(std::int16_t task, std::int16_t farEnd, const BringRules& rules);
  void AddBranch(std::int16_t farEnd, std::int16_t formerEnd, const BringRules& rules);

  ProjectToModel& state_;
  const JoinRules& rules_;
  std::int16_t first_;
  std::int16_t second_;
  std::int16_t join_ = 0;
  NumberCounter numbers_;
};

SynchronisedJoin::SynchronisedJoin(ProjectToModel& state, const JoinRules& rules,
                                   std::int16_t first, std::int16_t second)
    : state_(state), rules_(rules), first_(first), second_(second), numbers_(state) {}

void SynchronisedJoin::Run() {
  std::int16_t farEnd = 0;
  bool firstOnJoin = FindJoin(first_, rules_.firstCheck, nullptr);
  if (rules_.dropsIncomingOfSecond) {
    DropIncomingLink(second_);
  }
  const bool secondOnJoin =
      !firstOnJoin &&
      FindJoin(second_, rules_.secondCheck, rules_.keepsFarEndOfSecond ? &farEnd : nullptr);
  if (!firstOnJoin && !secondOnJoin) {
    PutOnNewJoin(first_, farEnd);
    firstOnJoin = true;
  }
  if (firstOnJoin) {
    BringToJoin(second_, rules_.second);
  } else {
    BringToJoin(first_, rules_.first);
  }
  numbers_.WriteBack();
}

Recordset SynchronisedJoin::LinksOf(std::string_view piece, std::int16_t number) {
  Recordset links = Ask(state_.gInterimConn.get(), LinksWhere(state_, piece, number));
  return links;
}

Recordset SynchronisedJoin::JunctionOf(const Value& number) {
  Recordset junctions =
      Ask(state_.gInterimConn.get(), JunctionsWhere(state_, rules_.junctionPiece, number));
  return junctions;
}

std::int16_t SynchronisedJoin::FarEnd(Recordset& link) {
  return ToInt16(link.Field(rules_.side.farEndColumn));
}

void SynchronisedJoin::Link(std::int16_t nearEnd, std::int16_t farEnd, const LinkTypes& types) {
  const auto nearType = types.nearType.empty() ? EndType(state_, nearEnd) : types.nearType;
  const auto farType = types.farType.empty() ? EndType(state_, farEnd) : types.farType;
  NewLink link;
  link.origin = rules_.side.behindTasks ? nearEnd : farEnd;
  link.destination = rules_.side.behindTasks ? farEnd : nearEnd;
  link.originType = rules_.side.behindTasks ? nearType : farType;
  link.destinationType = rules_.side.behindTasks ? farType : nearType;
  if (types.oddDestinationColumn && link.destinationType == kJunction) {
    link.destinationTypeColumn = "DestinationType";
  }
  AddLink(state_, numbers_, link);
}

bool SynchronisedJoin::FindJoin(std::int16_t task, FoundCheck check, std::int16_t* farEnd) {
  Recordset side = LinksOf(rules_.sideLinkPiece, task);
  if (!HasRow(side)) {
    return false;
  }
  Recordset junction = JunctionOf(side.Field(rules_.side.farEndColumn));
  const bool found =
      check == FoundCheck::kHasRow ? HasRow(junction) : !(junction.Eof() && !junction.Bof());
  if (found && IsJoin(junction)) {
    join_ = ToInt16(junction.Field("Num"));
    return true;
  }
  if (farEnd != nullptr) {
    *farEnd = FarEnd(side);
  }
  side.Delete();
  return false;
}

bool SynchronisedJoin::IsJoin(Recordset& junction) {
  if (!TextIs(junction.Field("Cardinality"), rules_.side.joinCardinality)) {
    return false;
  }
  if (rules_.joinByCardinality) {
    junction.SetField("Type", kSyncAnd);
    junction.Update();
    return true;
  }
  return TextIs(junction.Field("Type"), kSyncAnd);
}

bool SynchronisedJoin::IsOpposite(Recordset& junction) {
  return HasRow(junction) && TextIs(junction.Field("Cardinality"), rules_.side.branchCardinality) &&
         TextIs(junction.Field("Type"), kSyncAnd);
}

void SynchronisedJoin::DropIncomingLink(std::int16_t task) {
  Recordset incoming =
      LinksOf(rules_.side.behindTasks ? " AND Destination_num = " : rules_.sideLinkPiece, task);
  if (HasRow(incoming)) {
    incoming.Delete();
  }
}

void SynchronisedJoin::PutOnNewJoin(std::int16_t task, std::int16_t farEndOfOther) {
  join_ = AddJunction(state_, numbers_, rules_.side.joinCardinality, kSyncAnd);
  Recordset side = LinksOf(rules_.sideLinkPiece, task);
  if (HasRow(side)) {
    MoveToNewJoin(task, side);
    return;
  }
  Link(task, join_, {.oddDestinationColumn = rules_.oddColumnOfNewJoin});
  if (farEndOfOther != 0) {
    Link(join_, farEndOfOther, {.oddDestinationColumn = true});
  }
}

void SynchronisedJoin::MoveToNewJoin(std::int16_t task, Recordset& sideLink) {
  const std::int16_t farEnd = FarEnd(sideLink);
  sideLink.Delete();
  LinkTypes types;
  if (rules_.farEndTypeOfFirst) {
    types.farType = EndType(state_, task);
  }
  Link(join_, farEnd, types);
  if (rules_.newJoinFailsOnSideLink) {
    Recordset unopened;
    unopened.SetField("Origin_Type", EndType(state_, task));
  }
  Link(task, join_);
}

void SynchronisedJoin::BringToJoin(std::int16_t task, const BringRules& rules) {
  Recordset side = LinksOf(rules_.sideLinkPiece, task);
  if (!HasRow(side)) {
    Link(task, join_, {.oddDestinationColumn = rules.oddColumnOfFirstLinks});
    return;
  }
  const std::int16_t farEnd = FarEnd(side);
  if (farEnd == join_) {
    return;
  }
  side.Delete();
  AttachFarEnd(task, farEnd, rules);
}

void SynchronisedJoin::AttachFarEnd(std::int16_t task, std::int16_t farEnd,
                                    const BringRules& rules) {
  Recordset far = LinksOf(rules.farSidePiece, rules.farSideOfTask ? task : join_);
  if (!HasRow(far)) {
    Link(join_, farEnd);
    Link(task, join_, {.oddDestinationColumn = rules.oddColumnOfFirstLinks});
    return;
  }
  const std::int16_t formerEnd = FarEnd(far);
  Recordset junction = JunctionOf(formerEnd);
  if (IsOpposite(junction)) {
    Link(formerEnd, farEnd, {.nearType = kJunction});
  } else {
    far.Delete();
    AddBranch(farEnd, formerEnd, rules);
  }
  Link(task, join_);
}

void SynchronisedJoin::AddBranch(std::int16_t farEnd, std::int16_t formerEnd,
                                 const BringRules& rules) {
  const std::int16_t branch =
      AddJunction(state_, numbers_, rules_.side.branchCardinality, kAsyncAnd);
  Link(branch, farEnd);
  LinkTypes types{.nearType = rules.branchType};
  if (rules.formerEndTypeOfOther) {
    types.farType = EndType(state_, farEnd);
  }
  Link(branch, formerEnd, types);
  Link(join_, branch);
}

void JoinByTask(ProjectToModel& state, const JoinRules& rules, std::int16_t taskPid,
                std::int16_t predecessorPid) {
  const auto task = OccurrenceOfPlanTask(state, taskPid);
  if (!task) {
    return;
  }
  const auto predecessor = OccurrenceOfPlanTask(state, predecessorPid);
  if (predecessor) {
    SynchronisedJoin(state, rules, *task, *predecessor).Run();
  }
}

}  // namespace

void JoinFinishes(ProjectToModel& state, std::int16_t predecessor, std::int16_t task) {
  SynchronisedJoin(state, kJoinFinishes, predecessor, task).Run();
}

void JoinStarts(ProjectToModel& state, std::int16_t predecessor, std::int16_t task) {
  SynchronisedJoin(state, kJoinStarts, predecessor, task).Run();
}

void JoinFinishesByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid) {
  JoinByTask(state, kJoinFinishesByTask, taskPid, predecessorPid);
}

void JoinStartsByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid) {
  JoinByTask(state, kJoinStartsByTask, taskPid, predecessorPid);
}

}  // namespace merivane::roundtrip
