// A small model in the form that the reader takes. Tests change the parts they are about.
#pragma once

#include "model_parts.h"

namespace merivane::test {

// The text with lines added behind the first place of a passage.
inline std::string Behind(std::string text, const std::string& passage, const std::string& added) {
  return With(std::move(text), {{passage, passage + added}});
}

inline const std::string kProcess = Process("1", "Sand the hull");
inline const std::string kObject =
    With(Object("1", "Plank", ""), {{"Agent", "Object"}, {"Shared Resource", "Entity"}});
inline const std::string kFact = Fact("1", "Wet");
inline const std::string kObjectOccurrence =
    ObjectOccurrence("3", "Plank", "Sim_Entity|Cycle-Time:  2.5|Labor-Rule:  SAW#2|");
inline const std::string kBareObjectOccurrence = ObjectOccurrence("4", "Brush", "");
inline const std::string kOccurrence = UnitOf("1", "Sand the hull", "");
inline const std::string kJunction = Junction("11", "J1", "Fan Out", "XOR");
inline const std::string kLink =
    With(Link("21", "1", "J11"), {{" Cut)", " Sand the hull)"}, {"J11)", "J1)"}});
inline const std::string kScenario =
    With(Scenario("1", "Boat yard", "", kOccurrence, kJunction, kLink),
         {{"Creator:  ", "Creator:  Ada"}, {"Review Status:  ", "Review Status:  Working"}});
inline const std::string kModel = With(ModelOf({kProcess, kObject, kFact, kScenario}),
                                       {{"Used At:  ", "Used At:  Yard"},
                                        {"Project:  Shop", "Project:  Boat"},
                                        {"Date Created:  ", "Date Created:  1/2/2003"},
                                        {"Note Pool|", "Note Pool|Paint is wet.|"}});

}  // namespace merivane::test
