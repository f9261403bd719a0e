// Models in the reader's form, put together from their elements. A bar stands for the end of a
// line.
#pragma once

#include <string>

#include "changed_text.h"

namespace merivane::test {

// The text of a file: CR LF for each bar.
inline std::string FileText(const std::string& model) {
  std::string text;
  for (const char letter : model) text += letter == '|' ? "\r\n" : std::string(1, letter);
  return text;
}

inline std::string PoolBlocks(const std::string& glossary = "",
                              const std::string& properties = "") {
  return "  Glossary|" + glossary + "  End  Glossary|  Note List|  End  Note List|  Source List|" +
         "  End  Source List|  Property List|" + properties + "  End  Property List|";
}

inline std::string Lists(const std::string& indent, const std::string& facts = "") {
  return indent + "Object Occurrence List|" + indent + "End  Object Occurrence List|" + indent +
         "Fact List|" + facts + indent + "End  Fact List|" + indent + "Constraint List|" + indent +
         "End  Constraint List|";
}

inline std::string Process(const std::string& number, const std::string& name,
                           const std::string& glossary = "") {
  return "Process  " + number + "|  Name:  " + name + "|  Creator:  |  Date Created:  |" +
         "  Last Modified:  |" + PoolBlocks(glossary) + "  ID:  1|  IDEF0 Ref:  |" + Lists("    ") +
         "|End  Process " + number + "||";
}

inline std::string Object(const std::string& number, const std::string& name,
                          const std::string& properties) {
  return "Object  " + number + "|  Name:  " + name + "|  Creator:  |  Date Created:  |" +
         "  Last Modified:  |" + PoolBlocks("", properties) + "  Type:  Agent|" +
         "  Type:  Shared Resource|" + Lists("    ") + "|End  Object " + number + "||";
}

inline std::string Fact(const std::string& number, const std::string& name,
                        const std::string& glossary = "") {
  return "Fact  " + number + "|  Name:  " + name + "|  Creator:  |  Date Created:  |" +
         "  Last Modified:  |" + PoolBlocks(glossary) + "End  Fact " + number + "||";
}

// `simulation`: the lines of its glossary.
inline std::string ObjectOccurrence(const std::string& number, const std::string& name,
                                    const std::string& simulation) {
  return "          Object-Occurrence  " + number + "  (" + name + ")|            Property List|" +
         (simulation.empty()
              ? ""
              : "                Glossary|" + simulation + "                End  Glossary|") +
         "            End  Property List|          End  Object-Occurrence|";
}

inline std::string UnitOf(const std::string& number, const std::string& name,
                          const std::string& objects) {
  return "    Process  1  #" + number + "|      Name:  " + name + "|      ID:  1|" +
         "      IDEF0 Ref:  |        Object Occurrence List|" + objects +
         "        End  Object Occurrence List|        Fact List|        End  Fact List|        "
         "Constraint List|" +
         "        End  Constraint List|    End  Process||";
}

inline std::string Unit(const std::string& number, const std::string& name,
                        const std::string& simulation = "Sim|Cycle-Time:  2|Labor-Rule:  SAW#1|") {
  return UnitOf(number, name, ObjectOccurrence("1", "Saw", simulation));
}

inline std::string Junction(const std::string& number, const std::string& id,
                            const std::string& cardinality, const std::string& type,
                            const std::string& facts = "") {
  return "  Junction  " + number + "|    ID  " + id + "|    Cardinality:  " + cardinality +
         "|    Type:  " + type + "|    Date Created:  |    Last Modified:  |    Glossary|" +
         "    End  Glossary|" + Lists("      ", facts) + "    End  Elaboration|    Note List|" +
         "    End  Note List|  Property List|  End  Property List|  End  Junction||";
}

// An end that begins with "J" is a junction of the number behind it, and bears its name; units are
// called "Cut" and "Sand" in turn.
inline std::string End(const std::string& end) {
  if (end[0] == 'J') return "#" + end.substr(1) + "  (Junction, " + end + ")|";
  const bool isOdd = (end.back() - '0') % 2 == 1;
  return "#" + end + "  (Process-Occurrence, " + (isOdd ? "Cut" : "Sand") + ")|";
}

inline std::string Link(const std::string& number, const std::string& origin,
                        const std::string& destination, const std::string& id = "1") {
  return "  Link  " + number + "|    Origin  " + End(origin) + "    Destination  " +
         End(destination) + "    ID  " + id + "|    Type:  Precedence|    Glossary|" +
         "    End  Glossary|" + Lists("      ") +
         "    End  Elaboration||  Property List|  End  Property List|  End  Link|";
}

// `parent`: "" or the number of the unit that it decomposes.
inline std::string Scenario(const std::string& number, const std::string& name,
                            const std::string& parent, const std::string& units,
                            const std::string& junctions = "", const std::string& links = "") {
  return "Scenario  " + number + "|  Name:  " + name + "|" +
         (parent.empty() ? "" : "  Parent:  Process  #" + parent + " (Cut)|  Type:  View|") +
         "  Creator:  |  ID  1|  Revision Number  1|  Review Status:  |  Date Created:  |" +
         "  Last Modified:  |  Purpose|  End  Purpose|  Viewpoint|  End  Viewpoint|  Context|" +
         "  End  Context|  Description|  End  Description|" + Lists("    ") +
         "  Note List|  End  Note List|  Source List|  End  Source List|" +
         "  Process Occurrence List||" + units + "  End  Process Occurrence List|" +
         "  Junction List|" + (junctions.empty() ? "" : "|" + junctions) +
         "  End  Junction List|  Referent List|  End  Referent List|  Link List|" + links +
         "  End  Link List|End  Scenario||";
}

struct Parts {
  std::string processes = Process("1", "Cut") + Process("2", "Sand");
  std::string objects = Object("1", "Saw", "Quantity:  2|Alias:  SAW|");
  std::string facts = {};
  std::string scenarios =
      Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"), "", Link("5", "1", "2"));
};

// Scenarios of the whole model, each but the first with a blank line in front.
inline std::string ModelOf(const Parts& parts) {
  return "Dunmar Neutral Text; Version:2.20;  ||Project Summary|  Creator:  Ada|  Used At:  |" +
         std::string("  Project:  Shop|  Date Created:  |  Last Modified:  |  Description|") +
         "  End  Description|  Property List|  End  Property List|Process Pool|" + parts.processes +
         "End  Process Pool|Object Pool|" + parts.objects +
         "End  Object Pool|State Pool|End  State Pool|Fact Pool|" + parts.facts +
         "End  Fact Pool|Property Pool|End  Property Pool|Constraint Pool|" +
         "End  Constraint Pool|Note Pool|End  Note Pool|Source Pool|End  Source Pool|" +
         "Unknown Pool|End  Unknown Pool|Scenario List||" + parts.scenarios + "End  Scenario List|";
}

}  // namespace merivane::test
