#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "store/interim_db.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

namespace {

// Here, unlike everywhere else, one blank stands behind the colon.
void WriteStoredSummary(LineWriter& out, Recordset& project) {
  out.Keyword("  Creator: ", project.Field("PROJ_PROP_AUTHOR"));
  out.Keyword("  Used At: ", project.Field("PROJ_PROP_COMPANY"));
  out.Keyword("  Project: ", project.Field("PROJ_NAME"));
  out.Keyword("  Date Created: ", project.Field("PROJ_CREATION_DATE"));
  out.Keyword("  Last Modified: ", project.Field("PROJ_LAST_SAVED"));
  out.Block("  Description", project, "PROJ_PROP_SUBJECT", NullBlock::kEmptyLine);
  out.Line("End  Project Summary");
}

void WriteFixedSummary(LineWriter& out) {
  out.Lines({"  Creator: Merivane version 3.0", "  Used At: ", "  Project: ", "  Date Created: ",
             "  Last Modified: ", "  Description", "  End  Description", "End  Project Summary"});
}

void WriteProperties(LineWriter& out, Recordset& project, bool hasRow) {
  constexpr const char* kPropertyList = "KV7_PROJ_PROPERTY_LIST";
  out.Lines({"", "Project Properties", "", "  Property List"});
  const bool stored = hasRow && FieldExists(project, kPropertyList) == 1;
  out.Line(stored ? Joined(project.Field(kPropertyList)) : "");
  out.Lines({"  End  Property List", "End  Project Properties", ""});
}

}  // namespace

void WriteProjectSummary(ProjectToModel& state) {
  try {
    LineWriter out(state);
    Recordset project =
        AskStatic(state.gProjectConn.get(),
                  "SELECT * FROM [MSP_PROJECTS] WHERE [PROJ_ID] = ", state.gInterimProjId);
    out.Lines({"Dunmar Neutral Text; Version:2.20;  ", "Project Summary"});
    const bool hasRow = project.RecordCount() >= 1;
    if (hasRow) {
      project.MoveFirst();
      WriteStoredSummary(out, project);
    } else {
      WriteFixedSummary(out);
    }
    WriteProperties(out, project, hasRow);
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  }
}

}  // namespace merivane::neutraltext
