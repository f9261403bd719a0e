#include "synchronised_join.h"

#include "link_detection.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

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

}  // namespace merivane::roundtrip
