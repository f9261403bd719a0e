#include "runtime/conversions.h"
#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

constexpr const char* kScenarioHex = "KV7_SCENARIO_HEX";

bool IsZero(const Value& value) { return ToDouble(value) == 0; }

void WriteParentLines(LineWriter& out, Recordset& scenario, ModelText text) {
  const Value parent = scenario.Field("Parent_Num");
  if (parent.IsNull() || IsZero(parent)) {
    if (text == ModelText::kWhole) out.Keyword("  Creator:  ", scenario.Field("Creator"));
    return;
  }
  out.Keyword("  Parent:  Process  #", parent);
  if (text == ModelText::kRebuilt) {
    out.Lines({"  Type:  Role View", "  Creator:  "});
  } else {
    out.Keyword("  Type:  ", scenario.Field("Type"));
    out.Keyword("  Creator:  ", scenario.Field("Creator"));
  }
}

void WriteId(LineWriter& out, const Value& id, ModelText text) {
  const bool defaulted = (text == ModelText::kRebuilt && id.IsNull()) || IsZero(id);
  out.Keyword("  ID  ", defaulted ? Value("1") : id);
}

void WriteGeneratedHead(ScenarioTree& tree, const std::string& parentOutline,
                        std::int16_t parentTaskUid) {
  LineWriter& out = tree.out;
  const std::string counter = std::to_string(tree.state.scenarioCounter);
  out.Line("Scenario  " + counter);
  out.Line("  Name:  Scenario #" + counter);
  if (parentOutline != "0") out.Line("  Parent:  Process  #" + std::to_string(parentTaskUid));
  out.Lines({"  Type:  Role View", "  Creator:  ", "  ID  1", "  Revision Number  1",
             "  Review Status:  Working", "  Date Created:  ", "  Last Modified:  "});
  out.EmptyBlock("  Purpose");
  out.EmptyBlock("  Viewpoint");
  out.EmptyBlock("  Context");
  out.EmptyBlock("  Description");
  out.EmptyElaboration("  ");
  out.EmptyBlock("  Note List");
  out.EmptyBlock("  Source List");
  out.EmptyLine();
}

}  // namespace

void WriteStoredScenarioHead(LineWriter& out, Recordset& scenario, ModelText text) {
  const NullBlock whenNull =
      text == ModelText::kRebuilt ? NullBlock::kNoLine : NullBlock::kEmptyLine;
  out.Keyword("Scenario  ", scenario.Field("Num"));
  out.Keyword("  Name:  ", scenario.Field("Name"), "Scenario 1");
  WriteParentLines(out, scenario, text);
  WriteId(out, scenario.Field("ID"), text);
  out.Keyword("  Revision Number  ", scenario.Field("Revision_Number"), "1");
  out.Keyword("  Review Status:  ", scenario.Field("Review_Status"), "Working");
  out.Keyword("  Date Created:  ", scenario.Field("Date_Created"));
  out.Keyword("  Last Modified:  ", scenario.Field("Last_Modified"));
  out.Block("  Purpose", scenario, "Purpose", whenNull);
  out.Block("  Viewpoint", scenario, "Viewpoint", whenNull);
  out.Block("  Context", scenario, "Context", whenNull);
  out.Block("  Description", scenario, "Description", whenNull);
  out.Elaboration("  ", scenario, {}, whenNull);
  out.Block("  Note List", scenario, "Note_List", whenNull);
  out.Block("  Source List", scenario, "Source_List", whenNull);
  out.EmptyLine();
}

void WriteScenarioHeader(ScenarioTree& tree, Recordset& tasks, const std::string& parentOutline,
                         std::int16_t parentTaskUid) {
  if (!tree.HasStoredScenario(tasks)) {
    WriteGeneratedHead(tree, parentOutline, parentTaskUid);
    return;
  }
  Recordset scenario = AskStatic(tree.state.gProjectConn.get(),
                                 "SELECT * from SCENARIO where Num = ", tasks.Field(kScenarioHex));
  WriteStoredScenarioHead(tree.out, scenario, ModelText::kDirect);
}

}  // namespace merivane::neutraltext
