#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "store/interim_db.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

namespace {

std::string ProjectFilter(const ProjectToModel& state) {
  return std::to_string(state.gInterimProjId);
}

void WriteFact(LineWriter& out, Recordset& fact) {
  out.Keyword("Fact  ", fact.Field("Num"));
  out.Keyword("  Name:  ", fact.Field("Name"));
  out.Keyword("  Creator:  ", fact.Field("Creator"));
  out.Keyword("  Date Created:  ", fact.Field("Date_Created"));
  out.Keyword("  Last Modified:  ", fact.Field("Last_Modified"));
  out.Block("  Glossary", fact, "Glossary", NullBlock::kNoLine);
  out.Block("  Note List", fact, "Note_List", NullBlock::kNoLine);
  out.Block("  Source List", fact, "Source_List", NullBlock::kNoLine);
  out.EmptyLine();
  out.Block("  Property List", fact, "Property_List", NullBlock::kNoLine);
  out.Keyword("End  Fact ", fact.Field("Num"));
  out.EmptyLine();
}

void WriteFactPool(ProjectToModel& state, LineWriter& out, Connection* connection) {
  Recordset facts =
      AskStatic(connection, "SELECT * FROM Fact_Pool WHERE Msp_ProjID = ", ProjectFilter(state));
  out.Lines({"", "Fact Pool"});
  for (; !facts.Eof(); facts.MoveNext()) WriteFact(out, facts);
  out.Lines({"End  Fact Pool", ""});
}

void WriteMiscPool(LineWriter& out, std::string_view title, Recordset& misc,
                   std::string_view column) {
  out.Line(title);
  if (!misc.Eof() && !misc.Bof()) out.LineUnlessNull(misc.Field(column));
  out.Closing(title);
}

void WriteMiscPools(ProjectToModel& state, LineWriter& out, Connection* connection) {
  Recordset misc =
      AskStatic(connection, "SELECT * FROM Misc WHERE MSP_PROJID = ", ProjectFilter(state));
  out.EmptyLine();
  WriteMiscPool(out, "State Pool", misc, "State_Pool");
  out.EmptyLines(2);
  WriteFactPool(state, out, connection);
  out.EmptyLines(2);
  WriteMiscPool(out, "Property Pool", misc, "Property_Pool");
  out.EmptyLines(2);
  WriteMiscPool(out, "Constraint Pool", misc, "Constraint_Pool");
  out.EmptyLines(2);
  WriteMiscPool(out, "Note Pool", misc, "Note_Pool");
  out.EmptyLines(2);
  WriteMiscPool(out, "Source Pool", misc, "Source_Pool");
  out.EmptyLines(2);
  WriteMiscPool(out, "Unknown Pool", misc, "Unknown_Pool");
  out.EmptyLines(4);
}

void WriteEmptyPools(LineWriter& out) {
  for (std::string_view title : {"State Pool", "Fact Pool", "Property Pool", "Constraint Pool",
                                 "Note Pool", "Source Pool", "Unknown Pool"}) {
    out.EmptyBlock(title);
    out.EmptyLine();
  }
  out.EmptyLine();
}

}  // namespace

void WritePools(ProjectToModel& state, Connection* connection) {
  try {
    LineWriter out(state);
    if (TableExists(connection, "Misc") == 1) {
      WriteMiscPools(state, out, connection);
    } else {
      WriteEmptyPools(out);
    }
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  }
}

}  // namespace merivane::neutraltext
