// One run of the algorithm behind the four routines of rewire_synchronised.h, over occurrence
// numbers. Its words are told in join_rules.h.
#pragma once

#include <cstdint>

#include "join_rules.h"
#include "merge_statements.h"

namespace merivane::roundtrip {

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

}  // namespace merivane::roundtrip
