// A task's list of predecessors, held against the links of its scenario.
//
// All work in gCurrentScenario of gInterimProjId on gInterimConn. Only what the model doesn't say
// yet is added; nothing is taken away because the list no longer names it. A failure is a
// RunTimeError and leaves the rows written so far.
#pragma once

#include <cstdint>

#include "program/program.h"
#include "roundtrip/merge_listener.h"

namespace merivane::roundtrip {

using namespace program;

// `task` is a set of ProjectAct on the task. A task without predecessors loses its first incoming
// link, unless that comes from a junction that nothing leads into.
void MergeLinksOfTask(ProjectToModel& state, Recordset& task, MergeListener* listener);

// Entries of the list: its commas plus one; 0 for Null and empty text. A comma in first position
// isn't counted and ends the counting. Error 6 beyond 32,767.
std::int16_t CountPredecessors(const Value& text);

// For a list of one entry; the Text1 of the task must be a number. An SS or FF entry synchronises
// both tasks, SF is passed over, anything else is a precedence, dropped when the predecessor lies
// in another scenario. Leaves the two ends in gOriginUse and gDestinationUse.
void ApplySinglePredecessor(ProjectToModel& state, Recordset& task);

// For a list of several entries. SS and FF entries are carried out at once, in the list's order;
// the precedences that the model lacks then go in together.
void ApplySeveralPredecessors(ProjectToModel& state, Recordset& task);

// What the links of the scenario say already, and the simplest changes to them.
bool DirectLinkExists(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// True for a direct link, and when the way back from the destination along the first incoming link
// of each junction, all of a kind that holds "OR" (or all "AND"), comes to a junction with a link
// from the origin. A circle of junctions is error 28.
bool IsLinked(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Adds the link and returns true, unless the origin has a link out or the destination one in. Both
// type texts end in a blank, whatever the ends are.
bool AddDirectLink(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Deletes the links into the destination that come from a junction, save those from a
// synchronised AND. A link from a process is error 3021.
void DropPlainIncomingLinks(ProjectToModel& state, std::int16_t destination);

// New precedences that go through junctions, so that an occurrence keeps one link in and one out.
// A rule looks only at the first row of what it finds. Junctions are "Async. AND". A failure leaves
// the project's counter as it was.
//
// One new precedence. The link leaves from the AND fan-out that the origin ends in, or from a new
// one, or from an origin without a link out; it arrives at the AND fan-in or start junction that
// feeds the destination, or at a new fan-in, or at a destination without a link in. Nothing is
// added where both ends are one or the link is there.
//
// Where the destination was fed by a process, the link from that process into the new fan-in bears
// its origin's type in the column Orgin_Type; Origin_Type stays Null.
void ConnectThroughJunctions(ProjectToModel& state, std::int16_t origin, std::int16_t destination);

// Puts a fan-in in front of the task, its first incoming link moved to it, and leaves the
// junction's number in gDestinationUse.
void AddFanInForPredecessors(ProjectToModel& state, Recordset& task);

// Links each of gNewPredecessors to gDestinationUse; one that has a link out gets a new fan-out in
// front of it. The last predecessor stays in gOriginUse.
void AttachNewPredecessors(ProjectToModel& state);

// Tasks that the plan synchronises: two that finish together flow into one "Fan In" junction of
// type "Sync. AND", two that start together come out of one "Fan Out" of that type. The four
// routines are one algorithm with different rules. A failure leaves the project's counter as it
// was.
//
// By occurrence number, the predecessor first. The task loses its first incoming link.
// JoinFinishes fails (error 3021) on a predecessor whose first link out leads to a process,
// JoinStarts (statement error) where a link into either task remains to be looked at.
void JoinFinishes(ProjectToModel& state, std::int16_t predecessor, std::int16_t task);
void JoinStarts(ProjectToModel& state, std::int16_t predecessor, std::int16_t task);

// By number in the plan, the task first. Nothing is done when the plan lacks either number or has
// no occurrence number for it. Both fail (error 3021) where the task isn't on such a junction yet
// and the predecessor's link on that side has a process at its other end.
void JoinFinishesByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid);
void JoinStartsByTask(ProjectToModel& state, std::int16_t taskPid, std::int16_t predecessorPid);

}  // namespace merivane::roundtrip
