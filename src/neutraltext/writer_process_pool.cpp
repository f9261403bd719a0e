#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "store/interim_db.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

namespace {

// The name and the ID line come from the plan, so that a name changed there wins.
void WriteStoredProcess(LineWriter& out, Recordset& task, Connection* connection) {
  Recordset pool = AskStatic(
      connection, "SELECT * FROM [ACTIVITY_POOL] WHERE NUM = ", task.Field("KV7_PROC_HEX"),
      " AND MSP_PROJID = ", task.Field("PROJ_ID"));
  out.Keyword("Process  ", pool.Field("Num"));
  out.Keyword("  Name:  ", task.Field("Task_Name"));
  out.Keyword("  Creator:  ", pool.Field("CREATOR"));
  out.Keyword("  Date Created:  ", pool.Field("Date_Created"));
  out.Keyword("  Last Modified:  ", pool.Field("Last_Modified"));
  out.Block("  Glossary", pool, "GLOSSARY", NullBlock::kEmptyLine);
  out.Block("  Note List", pool, "Note_List", NullBlock::kEmptyLine);
  out.Block("  Source List", pool, "Source_List", NullBlock::kEmptyLine);
  out.Block("  Property List", pool, "Property_List", NullBlock::kEmptyLine);
  out.Keyword("  ID:  ", task.Field("Task_ID"));
  out.Keyword("  IDEF0 Ref:  ", pool.Field("ID"));
  out.Elaboration("  ", pool, {}, NullBlock::kEmptyLine);
  out.Keyword("End  Process ", pool.Field("Num"));
  out.EmptyLine();
}

void WriteBareProcess(LineWriter& out, Recordset& task) {
  out.Keyword("Process  ", task.Field("TASK_UID"));
  out.Keyword("  Name:  ", task.Field("TASK_NAME"));
  out.Lines({"  Creator:  ", "  Date Created:  ", "  Last Modified:  "});
  out.EmptyBlock("  Glossary");
  out.EmptyBlock("  Note List");
  out.EmptyBlock("  Source List");
  out.EmptyBlock("  Property List");
  out.Keyword("  ID:  ", task.Field(1));
  out.Line("  IDEF0 Ref:  ");
  out.EmptyElaboration("  ");
  out.Keyword("End  Process ", task.Field("TASK_UID"));
  out.EmptyLine();
}

}  // namespace

void WriteProcessPool(ProjectToModel& state) {
  try {
    LineWriter out(state);
    Connection* connection = state.gProjectConn.get();
    Recordset tasks = AskStatic(
        connection,
        "SELECT * FROM [MSP_TASKS] WHERE TASK_UID > 0 AND [PROJ_ID] = ", state.gInterimProjId);
    if (tasks.RecordCount() < 1) return;
    tasks.MoveLast();
    tasks.MoveFirst();
    out.Lines({"", "Process Pool"});
    state.progress.Begin("Writing the processes", tasks.RecordCount());
    const bool hasNumber = FieldExists(tasks, "KV7_PROC_HEX") == 1;
    for (; !tasks.Eof(); tasks.MoveNext(), state.progress.Step()) {
      if (hasNumber && AboveZero(tasks.Field("KV7_PROC_HEX"))) {
        WriteStoredProcess(out, tasks, connection);
      } else {
        WriteBareProcess(out, tasks);
      }
    }
    out.Lines({"", "End  Process Pool"});
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  }
}

}  // namespace merivane::neutraltext
