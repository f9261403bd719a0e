#include "neutraltext/modProjectToIDEF3.h"
#include "runtime/conversions.h"
#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

// The numbers and the duration are handed over as they were when the occurrence's list began.
class RebuiltOccurrence : public ObjectOccurrenceOwner {
 public:
  RebuiltOccurrence(std::int16_t scenarioNum, std::int16_t occurrenceNum, std::string duration)
      : scenario_(std::to_string(scenarioNum)),
        occurrence_(std::to_string(occurrenceNum)),
        duration_(std::move(duration)) {}

  std::string ScenarioNum() override { return scenario_; }
  std::string OccurrenceNum() override { return occurrence_; }
  Value Duration() override { return duration_; }
  std::string BroughtScenarioNum() override { return scenario_; }
  std::string BroughtResource(const std::string& objectNum, const std::string& project) override {
    return "select * from MSP_RESOURCES where KV7_OBJ_HEX = " + objectNum +
           " and Proj_ID = " + project;
  }
  const char* LaterAlias() const override { return "KV7_OBJ_Alias"; }

 private:
  std::string scenario_;
  std::string occurrence_;
  std::string duration_;
};

class RebuiltWriter {
 public:
  RebuiltWriter(ProjectToModel& state, Connection* connection)
      : state_(state),
        out_(state),
        connection_(connection),
        project_(std::to_string(state.gInterimProjId)) {}

  void WriteScenarioList();

 private:
  void WriteScenario(Recordset& scenario);
  void WriteProcessOccurrences(std::int16_t scenarioNum);
  void WriteProcessOccurrence(std::int16_t scenarioNum, Recordset& task);

  ProjectToModel& state_;
  LineWriter out_;
  Connection* connection_;
  std::string project_;
  KnownAnswers known_;
};

void RebuiltWriter::WriteScenarioList() {
  Recordset scenarios =
      AskStatic(connection_, "SELECT * FROM Scenario WHERE Msp_ProjID = ", project_);
  out_.Lines({"Scenario List", ""});
  state_.progress.Begin("Writing the scenarios", CountProjectTasks(state_));
  for (; !scenarios.Eof(); scenarios.MoveNext()) WriteScenario(scenarios);
  out_.Lines({"End  Scenario List", ""});
}

void RebuiltWriter::WriteScenario(Recordset& scenario) {
  const std::int16_t scenarioNum = ToInt16(scenario.Field("Num"));
  WriteStoredScenarioHead(out_, scenario, ModelText::kRebuilt);
  WriteProcessOccurrences(scenarioNum);
  out_.Line("Junction List");
  WriteStoredJunctions(state_, scenarioNum, connection_);
  out_.Lines({"End  Junction List", ""});
  out_.Block("Referent List", scenario, "Referent_List", NullBlock::kNoLine);
  out_.Lines({"", "Link List"});
  WriteStoredLinks(state_, scenarioNum, connection_, known_);
  out_.Line("End  Link List");
  out_.KeywordUnlessNull("Decomp-rightmost:  ", scenario.Field("Decomp_rightmost"));
  out_.Line("End  Scenario");
}

void RebuiltWriter::WriteProcessOccurrences(std::int16_t scenarioNum) {
  Recordset tasks =
      AskStatic(connection_, "SELECT * FROM MSP_TASKS where KV7_Scenario_HEX = ", scenarioNum,
                " And Proj_ID = ", project_);
  out_.Line("Process Occurrence List");
  for (; !tasks.Eof(); tasks.MoveNext(), state_.progress.Step()) {
    WriteProcessOccurrence(scenarioNum, tasks);
  }
  out_.Lines({"End  Process Occurrence List", ""});
}

// Both numbers of the head are the occurrence's.
void RebuiltWriter::WriteProcessOccurrence(std::int16_t scenarioNum, Recordset& task) {
  const std::string occurrence = Joined(task.Field("KV7_PROCOCC_HEX"));
  out_.EmptyLine();
  out_.Line("  Process  " + occurrence + "  #" + occurrence);
  out_.Keyword("    Name:  ", task.Field("TASK_Name"));
  out_.Keyword("    ID:  ", task.Field("KV7_PROCOCC_ID"), "1");
  out_.Keyword("    IDEF0 Ref:  ", task.Field("KV7_PROCOCC_REF"));
  out_.KeywordUnlessNull("    User Placement Column:  ", task.Field("KV7_PROCOCC_COLUMN"));
  out_.KeywordUnlessNull("    User Placement Row:  ", task.Field("KV7_PROCOCC_ROW"));
  out_.Lines({"    Elaboration", "      Object Occurrence List"});
  const std::int16_t occurrenceNum = ToInt16(task.Field("KV7_PROCOCC_HEX"));
  RebuiltOccurrence owner(scenarioNum, occurrenceNum, ToText(task.Field("KV7_PROCOCC_Duration")));
  WriteObjectOccurrencesOf(state_, owner, connection_, known_);
  out_.Closing("      Object Occurrence List");
  out_.Block("      Fact List", task, "KV7_PROCOCC_Fact_List", NullBlock::kNoLine);
  out_.Block("      Constraint List", task, "KV7_PROCOCC_Constraint_List", NullBlock::kNoLine);
  out_.Lines({"    End  Elaboration", "  End  Process "});
}

}  // namespace

void WriteRebuiltScenarioList(ProjectToModel& state, Connection* connection) {
  RebuiltWriter(state, connection).WriteScenarioList();
}

}  // namespace merivane::neutraltext
