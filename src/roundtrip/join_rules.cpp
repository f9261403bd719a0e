#include "join_rules.h"

#include "merge_statements.h"

namespace merivane::roundtrip {

namespace {

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

}  // namespace

const JoinRules kJoinFinishes = {
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
const JoinRules kJoinStarts = {
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

const JoinRules kJoinFinishesByTask = {
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

const JoinRules kJoinStartsByTask = {
    .side = kStarts,
    .sideLinkPiece = " AND destination_num = ",
    .junctionPiece = " AND Num = ",
    .firstCheck = FoundCheck::kHasRow,
    .secondCheck = FoundCheck::kNotEndWithoutStart,
    .farEndTypeOfFirst = true,
    .second = {.farSidePiece = kIntoJoin},
    .first = {.farSidePiece = kIntoJoin, .formerEndTypeOfOther = true},
};

}  // namespace merivane::roundtrip
