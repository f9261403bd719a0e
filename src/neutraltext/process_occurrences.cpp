#include <vector>

#include "runtime/conversions.h"
#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

// Everything comes from the task row. The later look-up names two columns of MSP_RESOURCES and a
// spelling of the scenario column that a database may lack: that is its run-time error.
class TaskRow : public ObjectOccurrenceOwner {
 public:
  explicit TaskRow(Recordset& tasks) : tasks_(tasks) {}

  std::string ScenarioNum() override { return Joined(tasks_.Field("KV7_SCENARIO_HEX")); }
  std::string OccurrenceNum() override { return Joined(tasks_.Field("KV7_PROCOCC_HEX")); }
  Value Duration() override { return tasks_.Field("KV7_PROCOCC_DURATION"); }
  std::string BroughtScenarioNum() override { return Joined(tasks_.Field("KV7_SCNEARIO_HEX")); }
  std::string BroughtResource(const std::string& objectNum, const std::string& project) override {
    return "select * from MSP_RESOURCES where num = " + objectNum + " and Msp_ProjID = " + project;
  }
  const char* LaterAlias() const override { return "Alias"; }

 private:
  Recordset& tasks_;
};

void WriteStoredOccurrence(ScenarioTree& tree, Recordset& tasks) {
  LineWriter& out = tree.out;
  out.Line("  Process  " + Joined(tasks.Field("KV7_PROC_HEX")) + "  #" +
           Joined(tasks.Field("KV7_PROCOCC_HEX")));
  out.Keyword("    Name:  ", tasks.Field("TASK_NAME"));
  out.Keyword("    ID:  ", tasks.Field("TASK_UID"));
  out.Keyword("    IDEF0 Ref:  ", tasks.Field("KV7_PROCOCC_REF"));
  out.Keyword("    User Placement Column:  ", tasks.Field("KV7_PROCOCC_COLUMN"));
  out.Keyword("    User Placement ROW:  ", tasks.Field("KV7_PROCOCC_ROW"));
  out.Lines({"    Elaboration", "      Object Occurrence List"});
  TaskRow owner(tasks);
  WriteObjectOccurrencesOf(tree.state, owner, tree.state.gProjectConn.get(), tree.known);
  out.Closing("      Object Occurrence List");
  out.Block("      Fact List", tasks, "KV7_PROCOCC_FACT_LIST", NullBlock::kEmptyLine);
  out.Block("      Constraint List", tasks, "KV7_PROCOCC_Constraint_LIST", NullBlock::kEmptyLine);
  out.Lines({"    End  Elaboration", "  End  Process "});
}

// The name stands two columns further left than every other line of the record.
void WriteGeneratedOccurrence(LineWriter& out, Recordset& tasks) {
  const std::string uid = Joined(tasks.Field("TASK_UID"));
  out.Line("  Process  " + uid + "  #" + uid);
  out.Keyword("  Name:  ", tasks.Field("TASK_NAME"));
  out.Lines({"    ID:  1", "    IDEF0 Ref:  "});
  out.EmptyElaboration("    ");
  out.Line("  End  Process ");
}

void WriteProcessOccurrence(ScenarioTree& tree, Recordset& tasks) {
  tree.out.EmptyLine();
  if (tree.HasStoredProcess(tasks)) {
    WriteStoredOccurrence(tree, tasks);
  } else {
    WriteGeneratedOccurrence(tree.out, tasks);
  }
}

bool BelongsTo(Recordset& tasks, const std::string& parentOutline) {
  return parentOutline == "0" ||
         ParentOutlineOf(ToText(tasks.Field("Task_Outline_Num"))) == parentOutline;
}

}  // namespace

void WriteProcessOccurrenceList(ScenarioTree& tree, Recordset& tasks,
                                const std::string& parentOutline, ScenarioLinks& links) {
  tasks.MoveLast();
  tasks.MoveFirst();
  tree.out.Line("Process Occurrence List");
  std::vector<LinksAtTask> written;
  for (; !tasks.Eof(); tasks.MoveNext()) {
    if (!BelongsTo(tasks, parentOutline)) continue;
    tree.state.progress.Step();
    WriteProcessOccurrence(tree, tasks);
    const std::int16_t taskUid = ToInt16(tasks.Field("TASK_UID"));
    written.push_back(AddFanJunctions(tree.state, taskUid, links));
  }
  tree.out.Line("End  Process Occurrence List");
  for (const LinksAtTask& task : written) AddPlainLink(tree.state, task, links);
  ResolveStartToStartLinks(tree.state, links);
  ResolveFinishToFinishLinks(tree.state, links);
}

}  // namespace merivane::neutraltext
