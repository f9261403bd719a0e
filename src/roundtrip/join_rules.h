// What sets the four routines of synchronised_join.h apart.
//
// Words of the rules, for a pair that finishes together and one that starts together:
//   join        "Fan In" of type "Sync. AND"; "Fan Out" of that type
//   side link   a task's first link out; its first link in
//   far end     of a link, the end that is away from the tasks: its destination; its origin
//   opposite    "Fan Out" of type "Sync. AND"; "Fan In" of that type
//   branch      "Fan Out" of type "Async. AND"; "Fan In" of that type
#pragma once

#include <string_view>

namespace merivane::roundtrip {

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

extern const JoinRules kJoinFinishes;
extern const JoinRules kJoinStarts;
extern const JoinRules kJoinFinishesByTask;
extern const JoinRules kJoinStartsByTask;

}  // namespace merivane::roundtrip
