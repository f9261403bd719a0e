#include "neutraltext/modGlobal.h"
#include "reader_lines.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

struct Summary {
  Value author, company, name, created, lastSaved;
};

// The author stands on the file's third line where that is the creator line, else on the fourth.
Summary ReadSummaryFields(ModelToProject& state) {
  constexpr std::size_t kStart = 3;
  constexpr std::size_t kLength = 100;
  NextLines(state, 2);
  if (!Holds(state.gLine, "Creator:")) NextLine(state);
  Summary summary;
  summary.author = Field(state, kStart, kLength);
  summary.company = NextField(state, kStart, kLength);
  summary.name = NextField(state, kStart, kLength);
  summary.created = NextField(state, kStart, kLength);
  summary.lastSaved = NextField(state, kStart, kLength);
  return summary;
}

void AddProject(ModelToProject& state, const Summary& summary) {
  Recordset projects = Ask(state.gMspConn.get(), "select * from MSP_PROJECTS");
  const std::string name = NameApartFromOthers(state, projects, ToText(summary.name));
  projects.AddNew();
  projects.SetField("PROJ_ID", state.gMspProjId);
  projects.SetField("PROJ_NAME", name);
  const auto setGiven = [&](std::string_view column, const Value& value) {
    if (!IsBlank(value)) projects.SetField(column, value);
  };
  setGiven("PROJ_PROP_AUTHOR", summary.author);
  setGiven("PROJ_PROP_COMPANY", summary.company);
  setGiven("PROJ_CREATION_DATE", summary.created);
  setGiven("PROJ_LAST_SAVED", summary.lastSaved);
  setGiven("PROJ_PROP_SUBJECT", state.fields.Description);
  setGiven("KV7_PROJ_PROPERTY_LIST", state.fields.Property_List);
  setGiven("PROJ_DATA_SOURCE", state.gDatabaseName);
  projects.SetField("PROJ_OPT_DEF_FIX_COST_ACCRUAL", 2);
  projects.SetField("PROJ_OPT_DEF_OVT_RATE", 15);
  projects.SetField("PROJ_OPT_DEF_STD_RATE", 10);
  projects.Update();
  projects.Close();
}

}  // namespace

// Rows passed before the name grew are not looked at again.
std::string NameApartFromOthers(ModelToProject& state, Recordset& projects, std::string name) {
  if (IsBlank(Value(name))) name = "Project 1";
  if (state.gOverwriteDb || projects.Bof() || projects.Eof()) return name;
  for (projects.MoveFirst(); !projects.Eof(); projects.MoveNext()) {
    if (Equal(projects.Field("PROJ_NAME"), name)) {
      name += "(" + std::to_string(state.gMspProjId) + ")";
    }
  }
  return name;
}

void ReadSummary(ModelToProject& state) {
  const Summary summary = ReadSummaryFields(state);
  NextLines(state, 2);
  std::string description = CollectTo(state, "  End  Description");
  std::string properties = ReadBlock(state, "  Property List");
  Keep(state.fields.Description, std::move(description));
  Keep(state.fields.Property_List, std::move(properties));
  AddProject(state, summary);
}

}  // namespace merivane::neutraltext
