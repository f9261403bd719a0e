// The sentences that a merge's changes and the differences of two files share.
#pragma once

#include <string>
#include <vector>

#include "inspect/finding.h"
#include "inspect/model_snapshot.h"
#include "reconcile/plan_content.h"

namespace merivane::inspect {

inline constexpr const char* kIsNew = "It is new.";
inline constexpr const char* kIsGone = "It is no longer there.";

// A plan's task without a duration takes a day, and of an object without a quantity there is one.
inline std::string OrOne(const std::string& number) { return number.empty() ? "1" : number; }

inline std::string NameSentence(const std::string& old) { return "It was called '" + old + "'."; }

inline std::string DaysSentence(const std::string& old, const std::string& now) {
  return "It takes " + OrOne(now) + " days instead of " + OrOne(old) + ".";
}

inline std::string CountSentence(const std::string& old, const std::string& now) {
  return "There are " + OrOne(now) + " of it instead of " + OrOne(old) + ".";
}

inline std::string NoteSentence(const std::string& now) {
  return now.empty() ? "It loses its note." : "It has another note.";
}

inline std::string LinkSentence(const ElementName& from, const ElementName& to) {
  return "It leads from " + Described(from) + " to " + Described(to) + ".";
}

using namespace reconcile;

// In the words of a merge's changes, each with its row in the second plan, or of what is gone in
// the first. A task is found by its unit and name, by its name in its place, by its name alone, and
// with another name by its unit.
std::vector<MergeChange> DifferencesBetween(const PlanContent& before, const PlanContent& after);

}  // namespace merivane::inspect
