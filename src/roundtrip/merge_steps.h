// The steps of a merge: what the work tables hold of a plan comes into the model of gInterimConn.
// Those that take a task's list of predecessors work in gCurrentScenario of gInterimProjId, where
// only what the model doesn't say yet is added; nothing is taken away because the list no longer
// names it. A failure of them is a RunTimeError and leaves the rows written so far.
#pragma once

#include <cstdint>

#include "program/program.h"
#include "roundtrip/modMpxtoIDEF3.h"

namespace merivane::roundtrip {

using namespace program;

// Every task of outline level 1 and deeper becomes an occurrence in the scenario of its place, or
// changes its own; when a model is rebuilt (gRebuildModel 1) every task counts as new. A plan
// without a row is error 3021. What was sent to the plan and isn't in it any more stays. A failure
// is a RunTimeError and leaves the rows written so far. A listener (null: none) hears of each task,
// and of a failure in its place.
void BringBackTasks(ProjectToModel& state, MergeListener* listener);

// The predecessors of the tasks of level 1, then those of the deeper levels. No step takes away
// what the plan no longer has, save single links. Without a top scenario the program ends; another
// failure is a RunTimeError and leaves the rows written so far. A listener (null: none) hears of
// each task, and of a failure in its place.
void MergeLinks(ProjectToModel& state, MergeListener* listener);

// Assignments become the objects of occurrences; those that the plan no longer has go only when a
// model is rebuilt. A failure is a RunTimeError and leaves the rows written so far.
void MergeResourceRequirements(ProjectToModel& state);

// Junctions that a merge leaves without a purpose. Both walk the junctions of the project as they
// stood at the start; rows deleted since are skipped.
//
// Deletes the junctions that have no link in or no link out; only when a model is rebuilt.
void RemoveDanglingJunctions(ProjectToModel& state);

// A junction with exactly one link in and one out stands for nothing: the incoming link goes on to
// the far end of the outgoing one, which is deleted with the junction. The link's types and names
// stay.
void CollapseJunctions(ProjectToModel& state);

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
