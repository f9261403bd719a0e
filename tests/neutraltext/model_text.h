// A small model in the form that the reader takes. A bar stands for the end of a line. Tests change
// the parts they are about.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace merivane::test {

// Each passage must stand in the text; its first place is changed.
inline std::string With(
    std::string text,
    std::initializer_list<std::pair<std::string_view, std::string_view>> changes) {
  for (const auto& [passage, other] : changes) {
    const std::size_t at = text.find(passage);
    if (at == std::string::npos) return "no such passage: " + std::string(passage);
    text.replace(at, passage.size(), other);
  }
  return text;
}

// The text with lines added behind the first place of a passage.
inline std::string Behind(std::string text, const std::string& passage, const std::string& added) {
  return With(std::move(text), {{passage, passage + added}});
}

inline const std::string kPoolBlocks =
    "  Glossary|  End  Glossary|  Note List|  End  Note List|  Source List|  End  Source List|"
    "  Property List|  End  Property List|";
inline const std::string kPoolElaboration =
    "  Elaboration|    Object Occurrence List|    End  Object Occurrence List|    Fact List|"
    "    End  Fact List|    Constraint List|    End  Constraint List|  End  Elaboration|";
inline const std::string kProcess =
    "Process  1|  Name:  Sand the hull|  Creator:  |  Date Created:  |  Last Modified:  |" +
    kPoolBlocks + "  ID:  1|  IDEF0 Ref:  |" + kPoolElaboration + "End  Process 1||";
inline const std::string kObject =
    "Object  1|  Name:  Plank|  Creator:  |  Date Created:  |  Last Modified:  |" + kPoolBlocks +
    "  Type:  Object|  Type:  Entity|" + kPoolElaboration + "End  Object 1||";
inline const std::string kFact =
    "Fact  1|  Name:  Wet|  Creator:  |  Date Created:  |  Last Modified:  |" + kPoolBlocks +
    "End  Fact 1||";
inline const std::string kObjectOccurrence =
    "          Object-Occurrence  3  (Plank)|            Property List|                Glossary|"
    "Sim_Entity|Cycle-Time:  2.5|Labor-Rule:  SAW#2|                End  Glossary|"
    "            End  Property List|          End  Object-Occurrence|";
inline const std::string kBareObjectOccurrence =
    "          Object-Occurrence  4  (Brush)|            Property List|"
    "            End  Property List|          End  Object-Occurrence|";
inline const std::string kOccurrence =
    "    Process  1  #1|      Name:  Sand the hull|      ID:  1|      IDEF0 Ref:  |"
    "        Object Occurrence List|        End  Object Occurrence List|        Fact List|"
    "        End  Fact List|        Constraint List|        End  Constraint List|    End  "
    "Process||";
inline const std::string kElaboration =
    "      Object Occurrence List|      End  Object Occurrence List|      Fact List|"
    "      End  Fact List|      Constraint List|      End  Constraint List|    End  Elaboration|";
inline const std::string kJunction =
    "  Junction  11|    ID  J1|    Cardinality:  Fan Out|    Type:  XOR|    Date Created:  |"
    "    Last Modified:  |    Glossary|    End  Glossary|" +
    kElaboration +
    "    Note List|    End  Note List|  Property List|  End  Property List|  End  Junction||";
inline const std::string kLink =
    "  Link  21|    Origin  #1  (Process-Occurrence, Sand the hull)|"
    "    Destination  #11  (Junction, J1)|    ID  1|    Type:  Precedence|    Glossary|"
    "    End  Glossary|" +
    kElaboration + "|  Property List|  End  Property List|  End  Link|";
inline const std::string kScenario =
    "Scenario  1|  Name:  Boat yard|  Creator:  Ada|  ID  1|  Revision Number  1|"
    "  Review Status:  Working|  Date Created:  |  Last Modified:  |  Purpose|  End  Purpose|"
    "  Viewpoint|  End  Viewpoint|  Context|  End  Context|  Description|  End  Description|" +
    kPoolElaboration + "  Note List|  End  Note List|  Source List|  End  Source List|" +
    "  Process Occurrence List||" + kOccurrence + "  End  Process Occurrence List|" +
    "  Junction List||" + kJunction + "  End  Junction List|  Referent List|" +
    "  End  Referent List|  Link List|" + kLink + "  End  Link List|End  Scenario||";
inline const std::string kModel =
    "Dunmar Neutral Text; Version:2.20;  ||Project Summary|  Creator:  Ada|  Used At:  Yard|"
    "  Project:  Boat|  Date Created:  1/2/2003|  Last Modified:  |  Description|"
    "  End  Description|  Property List|  End  Property List|Process Pool|" +
    kProcess + "End  Process Pool|Object Pool|" + kObject + "End  Object Pool|State Pool|" +
    "End  State Pool|Fact Pool|" + kFact + "End  Fact Pool|Property Pool|End  Property Pool|" +
    "Constraint Pool|End  Constraint Pool|Note Pool|Paint is wet.|End  Note Pool|Source Pool|" +
    "End  Source Pool|Unknown Pool|End  Unknown Pool|Scenario List||" + kScenario +
    "End  Scenario List|";

}  // namespace merivane::test
