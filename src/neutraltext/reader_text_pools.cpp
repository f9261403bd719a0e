#include <utility>

#include "reader_lines.h"
#include "reader_sections.h"
#include "runtime/dates.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

// Collects a pool's lines and stops behind the one that brings the text beyond the limit; the rest
// is left to the next section's search. `lookAt` sees each line.
template <typename LookAt>
std::string ReadPoolText(ModelToProject& state, const std::string& name, LookAt lookAt) {
  const std::string end = "End  " + name;
  SkipTo(state, name);
  NextLine(state);
  std::string text;
  Search(state, end);
  while (state.gLine != end) {
    lookAt(state.gLine);
    text.append(state.gLine).append(kCrLf);
    if (text.size() > kTextLimit) {
      Cut(state, kTextLimit);
      state.gLine = end;
    } else {
      NextLine(state);
    }
  }
  return text;
}

std::string ReadPoolText(ModelToProject& state, const std::string& name) {
  return ReadPoolText(state, name, [](const std::string&) {});
}

void SetStartTime(ModelToProject& state, const std::string& line) {
  Recordset project =
      Ask(state.gMspConn.get(), "select * from MSP_PROJECTS Where PROJ_ID = ", state.gMspProjId);
  project.SetField("PROJ_OPT_DEF_START_TIME", line);
  project.Update();
  project.Close();
}

// Finds the start date among the properties: its name, then its value's head, then the first line
// that is a date.
class StartDateSearch {
 public:
  explicit StartDateSearch(ModelToProject& state) : state_(state) {}

  void LookAt(const std::string& line) {
    switch (wanted_) {
      case Wanted::kName:
        if (HoldsNoCase(line, "Name:  Start Date")) wanted_ = Wanted::kValue;
        break;
      case Wanted::kValue:
        if (EqualNoCase(line, "Value")) wanted_ = Wanted::kDate;
        break;
      case Wanted::kDate:
        if (!IsDate(line)) break;
        SetStartTime(state_, line);
        wanted_ = Wanted::kNothing;
        break;
      case Wanted::kNothing:
        break;
    }
  }

 private:
  enum class Wanted { kName, kValue, kDate, kNothing };
  ModelToProject& state_;
  Wanted wanted_ = Wanted::kName;
};

}  // namespace

void ReadStatePool(ModelToProject& state) {
  const Value states = ReadPoolText(state, "State Pool");
  AddRow(state, state.rsMisc, "Misc", state.gMspProjId != 0,
         {{"Msp_ProjID", state.gMspProjId}, {"State_Pool", states}});
}

void ReadPropertyPool(ModelToProject& state) {
  StartDateSearch search(state);
  ReadPoolText(state, "Property Pool", [&](const std::string& line) { search.LookAt(line); });
}

void ReadRemainingPools(ModelToProject& state) {
  const std::string constraints = ReadPoolText(state, "Constraint Pool");
  const std::string notes = ReadPoolText(state, "Note Pool");
  const std::string sources = ReadPoolText(state, "Source Pool");
  const std::string unknown = ReadPoolText(state, "Unknown Pool");
  Recordset& misc = state.rsMisc;
  misc.OpenDynamic(RowsOfProject(state, "Misc"), state.gMspConn.get());
  if (!misc.Bof() && !misc.Eof()) {
    misc.MoveLast();
    misc.SetField("Property_Pool", "No peoperty pool");
    misc.SetField("Constraint_Pool", constraints);
    misc.SetField("Note_Pool", notes);
    misc.SetField("Source_Pool", sources);
    misc.SetField("Unknown_Pool", unknown);
    misc.Update();
  }
  misc.Close();
}

}  // namespace merivane::neutraltext
