#include "reader_lines.h"
#include "reader_sections.h"

namespace merivane::neutraltext {

void ReadOstnList(ModelToProject& state) {
  NextLine(state);
  const std::string text = CollectTo(state, "End  OSTN List");
  if (text.size() > kTextLimit) Cut(state, kTextLimit);
  if (text.empty() || text.size() > kTextLimit) return;
  Recordset& rows = state.rsOstn;
  rows.OpenDynamic("select * from OSTN_List", state.gMspConn.get());
  rows.AddNew({"OSTN_List", "Msp_ProjID"}, {text, state.gMspProjId});
  rows.Close();
}

}  // namespace merivane::neutraltext
