#include <utility>

#include "program/model_words.h"
#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/dates.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

constexpr Record kMisc = {.table = "Misc", .rows = &ModelToProject::rsMisc};

// Collects a pool's lines and stops behind the one that brings the text beyond the limit; the rest
// is left to the next section's search. `lookAt` sees each line.
template <typename LookAt>
std::string ReadPoolText(ModelToProject& state, std::string_view name, LookAt lookAt) {
  const std::string end = EndOf(name);
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

std::string ReadPoolText(ModelToProject& state, std::string_view name) {
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
  AddRow(state, kMisc, {Cell{"State_Pool", ReadPoolText(state, "State Pool")}});
}

void ReadPropertyPool(ModelToProject& state) {
  StartDateSearch search(state);
  ReadPoolText(state, "Property Pool", [&](const std::string& line) { search.LookAt(line); });
}

void ReadRemainingPools(ModelToProject& state) {
  std::vector<Cell> pools = {Cell{"Property_Pool", "No peoperty pool"}};
  pools.push_back({"Constraint_Pool", ReadPoolText(state, "Constraint Pool")});
  pools.push_back({"Note_Pool", ReadPoolText(state, "Note Pool")});
  pools.push_back({"Source_Pool", ReadPoolText(state, "Source Pool")});
  pools.push_back({"Unknown_Pool", ReadPoolText(state, "Unknown Pool")});
  SetInLastRow(state, kMisc, std::move(pools));
}

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
