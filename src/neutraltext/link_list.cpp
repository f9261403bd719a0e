#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

void WriteGeneratedLink(LineWriter& out, const LinkRow& link) {
  out.Keyword("Link ", link.number);
  out.Keyword("  Origin  #", link.origin);
  out.Keyword("  Destination  #", link.destination);
  out.Lines({"  id 1", "  Type:  Precedence", "  glossary", "  End  Glossary"});
  out.EmptyElaboration("  ");
  out.EmptyBlock("Property List");
  out.Line("End  Link");
}

// The scenario that holds an occurrence or a junction of that number; nothing when neither exists.
std::optional<std::int16_t> FindScenarioOf(ProjectToModel& state, std::int16_t number,
                                           Connection* connection) {
  const std::string project = std::to_string(state.gInterimProjId);
  Recordset tasks =
      AskStatic(connection, "Select * From MSP_TASKS where KV7_PROCOCC_HEX = ", number,
                " and Proj_ID = ", project);
  if (!tasks.Eof()) return ToInt16(tasks.Field("KV7_Scenario_HEX"));
  Recordset junctions =
      AskStatic(connection, "Select * From Junctions_in_Scenario where Num = ", number,
                " and Msp_ProjID = ", project);
  if (!junctions.Eof()) return ToInt16(junctions.Field("Scenario_num"));
  return std::nullopt;
}

std::optional<std::int16_t> ScenarioOf(ProjectToModel& state, std::int16_t number,
                                       Connection* connection, KnownAnswers& known) {
  const auto found = known.scenarioOf.find(number);
  if (found != known.scenarioOf.end()) return found->second;
  return known.scenarioOf[number] = FindScenarioOf(state, number, connection);
}

}  // namespace

void WriteStoredLink(LineWriter& out, Recordset& link) {
  out.Keyword("Link  ", link.Field("Num"));
  out.Keyword("  Origin  #", link.Field("Origin_Num"));
  out.Keyword("  Destination  #", link.Field("Destination_Num"));
  out.Keyword("  ID  ", link.Field("ID"), "1");
  out.Keyword("  Type:  ", link.Field("Type"), "Precedence");
  out.Block("  Glossary", link, "Glossary", NullBlock::kNoLine);
  out.Elaboration("  ", link, {}, NullBlock::kEmptyLine);
  out.EmptyLine();
  out.Block("Property List", link, "Property_List", NullBlock::kEmptyLine);
  out.Line("End  Link");
}

int SameScenario(ProjectToModel& state, std::int16_t originNum, std::int16_t destinationNum,
                 Connection* connection, KnownAnswers& known) {
  try {
    const std::optional<std::int16_t> origin = ScenarioOf(state, originNum, connection, known);
    if (!origin) return 0;
    return origin == ScenarioOf(state, destinationNum, connection, known) ? 1 : 0;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
    return 0;
  }
}

void WriteStoredLinks(ProjectToModel& state, std::int16_t scenarioNum, Connection* connection,
                      KnownAnswers& known) {
  LineWriter out(state);
  Recordset links =
      AskStatic(connection, "Select * From Links_in_Scenario where Scenario_num = ", scenarioNum,
                " and Msp_ProjID = ", state.gInterimProjId);
  for (; !links.Eof(); links.MoveNext()) {
    const std::int16_t origin = ToInt16(links.Field("Origin_Num"));
    const std::int16_t destination = ToInt16(links.Field("Destination_Num"));
    if (SameScenario(state, origin, destination, connection, known) == 1) {
      WriteStoredLink(out, links);
    }
  }
}

void WriteLinkList(ScenarioTree& tree, std::int16_t scenarioNum, const LinkTable& linkTable) {
  tree.out.Lines({"", "Link List"});
  Recordset tasks = AskStatic(tree.state.gProjectConn.get(), "Select * From [MSP_TASKS] ");
  if (tree.HasScenarioColumn(tasks) && scenarioNum > 0) {
    WriteStoredLinks(tree.state, scenarioNum, tree.state.gProjectConn.get(), tree.known);
  } else {
    for (const LinkRow& link : linkTable.Rows()) {
      if (!link.deleted) WriteGeneratedLink(tree.out, link);
    }
  }
  tree.out.Line("End  Link List");
}

}  // namespace merivane::neutraltext
