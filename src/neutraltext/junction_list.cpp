#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

void WriteStoredJunction(LineWriter& out, Recordset& junction) {
  out.EmptyLine();
  out.Keyword("Junction  ", junction.Field("Num"));
  out.Keyword("  ID  ", junction.Field("ID"), "J1");
  out.Keyword("  Cardinality:  ", junction.Field("Cardinality"));
  out.Keyword("  Type:  ", junction.Field("Type"));
  out.Keyword("  Date Created:  ", junction.Field("Date_Created"));
  out.Keyword("  Last Modified:  ", junction.Field("Last_Modified"));
  out.KeywordUnlessNull("  User Placement Column:  ", junction.Field("Column"));
  out.KeywordUnlessNull("  User Placement Row:  ", junction.Field("Row"));
  out.Block("  Glossary", junction, "Glossary", NullBlock::kNoLine);
  out.Elaboration("  ", junction, {}, NullBlock::kEmptyLine);
  out.Block("  Note List", junction, "Note_List", NullBlock::kEmptyLine);
  out.EmptyLine();
  out.Block("Property List", junction, "Property_List", NullBlock::kEmptyLine);
  out.Line("End  Junction");
}

void WriteGeneratedJunction(LineWriter& out, const JunctionRow& junction) {
  out.Keyword("Junction ", junction.number);
  out.Keyword("ID ", junction.identifier);
  out.Keyword("Cardinality:  ", junction.cardinality);
  out.Keyword("Type:  ", junction.type);
  out.Lines({"Date Created:", "Last Modified:", "User Placement Column:  -1",
             "User Placement Row:  -1", "glossary", "End  Glossary"});
  out.EmptyElaboration("");
  out.EmptyBlock("Note List");
  out.EmptyBlock("Property List");
  out.Line("End  Junction");
}

}  // namespace

void WriteStoredJunctions(ProjectToModel& state, std::int16_t scenarioNum, Connection* connection) {
  LineWriter out(state);
  Recordset junctions = AskStatic(
      connection, "Select * from Junctions_in_Scenario where Scenario_Num = ", scenarioNum,
      " and Msp_ProjID = ", state.gInterimProjId);
  for (; !junctions.Eof(); junctions.MoveNext()) WriteStoredJunction(out, junctions);
}

void WriteJunctionList(ScenarioTree& tree, Recordset& tasks, std::int16_t scenarioNum,
                       const JunctionTable& junctionTable) {
  tasks.MoveLast();
  tasks.MoveFirst();
  tree.out.Line("Junction List");
  if (tree.HasStoredScenario(tasks)) {
    WriteStoredJunctions(tree.state, scenarioNum, tree.state.gProjectConn.get());
  } else {
    for (const JunctionRow& junction : junctionTable.Rows()) {
      WriteGeneratedJunction(tree.out, junction);
    }
  }
  tree.out.Line("End  Junction List");
}

}  // namespace merivane::neutraltext
