#include "runtime/conversions.h"
#include "scenario_parts.h"

namespace merivane::neutraltext {

namespace {

constexpr const char* kCelvarType = "KV7_OBJ_Celvar_Type";

class ObjectOccurrenceWriter {
 public:
  ObjectOccurrenceWriter(ProjectToModel& state, ObjectOccurrenceOwner& owner,
                         Connection* connection, KnownAnswers& known)
      : out_(state),
        owner_(owner),
        connection_(connection),
        known_(known),
        project_(std::to_string(state.gInterimProjId)) {}

  void WriteAll();

 private:
  void WriteOne(Recordset& occurrence);
  bool IsEntity(const std::string& objectNum);
  void WriteEntity(Recordset& occurrence);
  std::string LaborText(Recordset& occurrence);
  std::string RuleOfDecomposed(Recordset& occurrence);
  void AddBroughtTerm(std::string& labor, Recordset& brought);

  LineWriter out_;
  ObjectOccurrenceOwner& owner_;
  Connection* connection_;
  KnownAnswers& known_;
  std::string project_;
};

void ObjectOccurrenceWriter::WriteAll() {
  Recordset occurrences = AskStatic(
      connection_,
      "Select * from Object_in_Activity_in_Scenario where Scenario_Num = ", owner_.ScenarioNum(),
      " and Activity_Num = ", owner_.OccurrenceNum(), " and Msp_ProjID = ", project_);
  for (; !occurrences.Eof(); occurrences.MoveNext()) WriteOne(occurrences);
}

void ObjectOccurrenceWriter::WriteOne(Recordset& occurrence) {
  out_.Keyword("        Object-Occurrence  ", occurrence.Field("Object_Occ_Num"));
  out_.Lines({"", "          Property List", "            Property",
              "              Name:  @Simulation Information", "              Glossary"});
  if (IsEntity(Joined(occurrence.Field("Object_Occ_Num")))) WriteEntity(occurrence);
  out_.Lines({"              End  Glossary", "            End  Property",
              "          End  Property List", "        End  Object-Occurrence"});
}

bool ObjectOccurrenceWriter::IsEntity(const std::string& objectNum) {
  const auto found = known_.isEntity.find(objectNum);
  if (found != known_.isEntity.end()) return found->second;
  Recordset resource =
      AskStatic(connection_, "Select * from MSP_RESOURCES where KV7_OBJ_HEX = ", objectNum,
                " and Proj_ID = ", project_);
  const bool isEntity = !resource.Eof() && Joined(resource.Field(kCelvarType)) == "Entity";
  return known_.isEntity[objectNum] = isEntity;
}

void ObjectOccurrenceWriter::WriteEntity(Recordset& occurrence) {
  out_.Line("Sim_Entity");
  out_.Keyword("Cycle-Time:  ", owner_.Duration(), "1.0");
  out_.Line("Labor-Rule:  " + LaborText(occurrence));
  out_.Line("End  Sim_Entity");
}

std::string ObjectOccurrenceWriter::LaborText(Recordset& occurrence) {
  std::string labor = RuleOfDecomposed(occurrence);
  Recordset brought =
      AskStatic(connection_, "Select * from Object_in_Activity_in_Scenario where Scenario_Num = ",
                owner_.BroughtScenarioNum(), " and Activity_Num = ", owner_.OccurrenceNum(),
                " and Brought_from_Project = 1 and Msp_ProjID = ", project_);
  for (; !brought.Eof(); brought.MoveNext()) AddBroughtTerm(labor, brought);
  return labor;
}

// A stored rule counts only for an occurrence that a scenario decomposes.
std::string ObjectOccurrenceWriter::RuleOfDecomposed(Recordset& occurrence) {
  Recordset below = AskStatic(connection_, "Select * from Scenario where Parent_Num = ",
                              occurrence.Field("Activity_Num"), " and Msp_ProjID = ", project_);
  if (below.Eof()) return "";
  const std::string rule = Joined(occurrence.Field("Labor_Rule"));
  return rule == "None" ? "" : rule;
}

void ObjectOccurrenceWriter::AddBroughtTerm(std::string& labor, Recordset& brought) {
  Recordset resource = AskStatic(
      connection_, owner_.BroughtResource(Joined(brought.Field("Object_Occ_Num")), project_));
  if (resource.Eof() || Joined(resource.Field(kCelvarType)) != "Shared Resource") return;
  const char* alias = labor.empty() ? "KV7_OBJ_Alias" : owner_.LaterAlias();
  if (!labor.empty()) labor += " AND ";
  labor += Joined(resource.Field(alias)) + "#" + Joined(brought.Field("Qty"));
}

}  // namespace

void WriteObjectOccurrencesOf(ProjectToModel& state, ObjectOccurrenceOwner& owner,
                              Connection* connection, KnownAnswers& known) {
  ObjectOccurrenceWriter(state, owner, connection, known).WriteAll();
}

}  // namespace merivane::neutraltext
