#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "neutraltext/modProjectToIDEF3.h"
#include "runtime/conversions.h"
#include "scenario_parts.h"
#include "store/ask.h"
#include "writer_lines.h"

namespace merivane::neutraltext {

namespace {

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    std::size_t end = text.find("\r\n", start);
    if (end == std::string::npos) end = text.size();
    lines.push_back(text.substr(start, end - start));
    start = end + 2;
  }
  return lines;
}

// In the line that begins with the label, or in one more. Null leaves the lines as they are.
void SetProperty(std::vector<std::string>& lines, std::string_view label, const Value& value) {
  if (value.IsNull()) return;
  const std::string line = std::string(label) + "  " + Joined(value);
  for (std::string& known : lines) {
    if (!known.starts_with(label)) continue;
    known = line;
    return;
  }
  lines.push_back(line);
}

// What the reader takes from an object of a unit: the lines of its first glossary.
class Simulation {
 public:
  explicit Simulation(std::vector<std::string>& lines) : lines_(lines) {
    while (opening_ < lines_.size() && lines_[opening_] != kOpening) ++opening_;
    closing_ = opening_;
    while (closing_ < lines_.size() && lines_[closing_] != kClosing) ++closing_;
  }

  static bool IsEdge(const std::string& line) { return line == kOpening || line == kClosing; }

  void Set(const Value& cycleTime, const Value& laborRule) {
    if (cycleTime.IsNull() && laborRule.IsNull()) return;
    const std::string days = "Cycle-Time:  " + (cycleTime.IsNull() ? "1" : Joined(cycleTime));
    const std::string rule = "Labor-Rule:  " + Joined(laborRule);
    if (Has(2, "Cycle-Time:")) {
      lines_[opening_ + 2] = days;
      if (Has(3, "Labor-Rule:")) {
        lines_[opening_ + 3] = rule;
      } else {
        lines_.insert(At(3), rule);
      }
      return;
    }
    if (opening_ == lines_.size()) {
      lines_.insert(lines_.end(), {kProperty, kName, kOpening, kClosing, kPropertyEnd});
      opening_ = lines_.size() - 3;
    }
    lines_.insert(At(1), {"Sim_Entity", days, rule, "End  Sim_Entity"});
  }

 private:
  static constexpr const char* kProperty = "              Property";
  static constexpr const char* kName = "                Name:  @Simulation Information";
  static constexpr const char* kOpening = "                Glossary";
  static constexpr const char* kClosing = "                End  Glossary";
  static constexpr const char* kPropertyEnd = "              End  Property";

  bool Has(std::size_t line, std::string_view label) const {
    return opening_ + line < closing_ && lines_[opening_ + line].starts_with(label);
  }
  std::vector<std::string>::iterator At(std::size_t line) {
    return lines_.begin() + static_cast<std::ptrdiff_t>(opening_ + line);
  }

  std::vector<std::string>& lines_;
  std::size_t opening_ = 0;
  std::size_t closing_ = 0;
};

class WholeWriter {
 public:
  explicit WholeWriter(ProjectToModel& state)
      : state_(state), out_(state), project_(std::to_string(state.gInterimProjId)) {}

  void Write() {
    WriteProjectSummary(state_);
    WritePool("Process Pool", "Activity_Pool", &WholeWriter::WriteProcess);
    WritePool("Object Pool", "Object_Pool", &WholeWriter::WriteObject);
    WritePools(state_, state_.gProjectConn.get());
    out_.Line("Scenario List");
    Recordset scenarios = Rows("Scenario");
    for (; !scenarios.Eof(); scenarios.MoveNext()) WriteScenario(scenarios);
    out_.Line("End  Scenario List");
  }

 private:
  Recordset Rows(std::string_view table, const std::string& condition = "") const {
    return AskStatic(state_.gProjectConn.get(), "Select * from ", table,
                     " where Msp_ProjID = ", project_, condition);
  }

  void WritePool(const std::string& name, std::string_view table,
                 void (WholeWriter::*write)(Recordset&)) {
    out_.Lines({"", name});
    for (Recordset rows = Rows(table); !rows.Eof(); rows.MoveNext()) (this->*write)(rows);
    out_.Lines({"", "End  " + name});
  }

  void WriteHead(std::string_view kind, Recordset& row) {
    out_.Keyword(std::string(kind) + "  ", row.Field("Num"));
    out_.Keyword("  Name:  ", row.Field("Name"));
    out_.Keyword("  Creator:  ", row.Field("Creator"));
    out_.Keyword("  Date Created:  ", row.Field("Date_Created"));
    out_.Keyword("  Last Modified:  ", row.Field("Last_Modified"));
    out_.Block("  Glossary", row, "Glossary", NullBlock::kEmptyLine);
    out_.Block("  Note List", row, "Note_List", NullBlock::kEmptyLine);
    out_.Block("  Source List", row, "Source_List", NullBlock::kEmptyLine);
  }

  void WriteProcess(Recordset& process) {
    WriteHead("Process", process);
    out_.Block("  Property List", process, "Property_List", NullBlock::kEmptyLine);
    out_.Keyword("  ID:  ", process.Field("ID"), "1");
    out_.Keyword("  IDEF0 Ref:  ", process.Field("Ref"));
    out_.Elaboration("  ", process, {}, NullBlock::kEmptyLine);
    out_.Keyword("End  Process ", process.Field("Num"));
    out_.EmptyLine();
  }

  void WriteObject(Recordset& object) {
    WriteHead("Object", object);
    std::vector<std::string> properties = LinesOf(Joined(object.Field("Property_List")));
    SetProperty(properties, "Quantity:", object.Field("Quantity"));
    SetProperty(properties, "Alias:", object.Field("Alias"));
    out_.Line("  Property List");
    for (const std::string& line : properties) out_.Line(line);
    out_.Closing("  Property List");
    out_.Keyword("  Type:  ", object.Field("Dunmar_Type"));
    out_.Keyword("  Type:  ", object.Field("Celvar_Type"));
    out_.Elaboration("  ", object, {}, NullBlock::kEmptyLine);
    out_.Keyword("End  Object ", object.Field("Num"));
    out_.EmptyLine();
  }

  void WriteScenario(Recordset& scenario) {
    const std::string number = Joined(scenario.Field("Num"));
    const std::string inScenario = " and Scenario_Num = " + number;
    WriteStoredScenarioHead(out_, scenario, ModelText::kWhole);
    out_.Line("Process Occurrence List");
    Recordset units = Rows("Activity_in_Scenario", inScenario);
    for (; !units.Eof(); units.MoveNext()) WriteUnit(units);
    out_.Lines({"End  Process Occurrence List", "Junction List"});
    WriteStoredJunctions(state_, ToInt16(scenario.Field("Num")), state_.gProjectConn.get());
    out_.Lines({"End  Junction List", ""});
    out_.Block("Referent List", scenario, "Referent_List", NullBlock::kEmptyLine);
    out_.Lines({"", "Link List"});
    Recordset links = Rows("Links_in_Scenario", inScenario);
    for (; !links.Eof(); links.MoveNext()) WriteStoredLink(out_, links);
    out_.Line("End  Link List");
    out_.KeywordUnlessNull("Decomp-rightmost:  ", scenario.Field("Decomp_rightmost"));
    out_.Lines({"End  Scenario", ""});
  }

  void WriteUnit(Recordset& unit) {
    out_.EmptyLine();
    out_.Line("  Process  " + Joined(unit.Field("Process_Num")) + "  #" +
              Joined(unit.Field("Use_Num")));
    out_.Keyword("    Name:  ", unit.Field("Name"));
    out_.Keyword("    ID:  ", unit.Field("ID"), "1");
    out_.Keyword("    IDEF0 Ref:  ", unit.Field("Ref"));
    out_.KeywordUnlessNull("    User Placement Column:  ", unit.Field("Column"));
    out_.KeywordUnlessNull("    User Placement ROW:  ", unit.Field("Row"));
    out_.Lines({"    Elaboration", "      Object Occurrence List"});
    WriteObjectsOf(unit);
    out_.Closing("      Object Occurrence List");
    out_.Block("      Fact List", unit, "Fact_List", NullBlock::kEmptyLine);
    out_.Block("      Constraint List", unit, "Constraint_List", NullBlock::kEmptyLine);
    out_.Lines({"    End  Elaboration", "  End  Process "});
  }

  // The unit has the cycle time and the labor rule of its last object.
  void WriteObjectsOf(Recordset& unit) {
    Recordset objects = Rows("Object_in_Activity_in_Scenario",
                             " and Activity_Num = " + Joined(unit.Field("Use_Num")));
    while (!objects.Eof()) {
      const Value number = objects.Field("Object_Occ_Num");
      std::vector<std::string> lines = LinesOf(Joined(objects.Field("Property_List")));
      // What stands there without a glossary was taken over from a record of another kind.
      if (std::none_of(lines.begin(), lines.end(), Simulation::IsEdge)) lines.clear();
      objects.MoveNext();
      if (objects.Eof()) Simulation(lines).Set(unit.Field("Duration"), unit.Field("Labor_Rule"));
      WriteObjectUse(number, lines);
    }
  }

  // Kept as they are read: two columns further in, but for the glossaries.
  void WriteObjectUse(const Value& number, const std::vector<std::string>& properties) {
    out_.Keyword("        Object-Occurrence  ", number);
    out_.Lines({"", "          Property List"});
    bool inGlossary = false;
    for (const std::string& line : properties) {
      const bool isEdge = Simulation::IsEdge(line);
      const bool moves = (isEdge || !inGlossary) && line.starts_with("  ");
      if (isEdge) inGlossary = !inGlossary;
      out_.Line(moves ? line.substr(2) : line);
    }
    out_.Lines({"          End  Property List", "        End  Object-Occurrence"});
  }

  ProjectToModel& state_;
  LineWriter out_;
  std::string project_;
};

}  // namespace

void WriteWholeModel(ProjectToModel& state) {
  const ReadScope reading(state.gProjectConn.get());
  state.progress.Begin("Writing the model", 0);
  WholeWriter(state).Write();
  state.files.Close(state.gOutFile);
}

}  // namespace merivane::neutraltext
