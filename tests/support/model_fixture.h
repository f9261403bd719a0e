// A model put together row by row in a fresh database, and its translation.
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "database_fixture.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::test {

using namespace translator;

using Values = std::vector<Value>;
using Texts = std::vector<std::string>;

class ModelFixture : public DatabaseFixture {
 protected:
  using Fields = std::vector<std::pair<std::string, Value>>;

  ModelFixture() {
    OpenForModel();
    Add("MSP_PROJECTS", {{"PROJ_ID", 1}});
  }

  void Add(const std::string& table, const Fields& fields) {
    Recordset rows;
    rows.OpenDynamic("select * from " + table, &Model());
    rows.AddNew();
    for (const auto& [name, value] : fields) rows.SetField(name, value);
    if (table != "MSP_PROJECTS") rows.SetField("Msp_ProjID", 1);
    rows.Update();
  }

  void Scenario(int num, const char* name, int parent = 0) {
    Add("Scenario", {{"Num", num}, {"Name", name}, {"Parent_Num", parent}});
  }
  // An occurrence and the process of its name, "U" and the number.
  void Uob(int use, int scenario = 1, Fields fields = {}, const Value& glossary = {}) {
    const std::string name = "U" + std::to_string(use);
    Add("Activity_Pool", {{"Name", name}, {"Glossary", glossary}});
    fields.insert(fields.begin(), {{"Use_Num", use}, {"Scenario_Num", scenario}, {"Name", name}});
    Add("Activity_in_Scenario", fields);
  }
  void Uobs(std::initializer_list<int> uses) {
    for (const int use : uses) Uob(use);
  }
  // A junction of the first scenario, called "J" and its number.
  void Junction(int num, const char* cardinality, const char* type) {
    const std::string id = "J" + std::to_string(num);
    Add("Junctions_in_Scenario", {{"Num", num},
                                  {"ID", id},
                                  {"Scenario_Num", 1},
                                  {"Cardinality", cardinality},
                                  {"Type", type}});
  }
  // Numbers from 100 are junctions. A link's id is made of both ends.
  void Links(std::initializer_list<std::pair<int, int>> links) {
    for (const auto& [origin, destination] : links) {
      Fields fields = {{"ID", origin * 1000 + destination}, {"Scenario_Num", 1}};
      for (const auto& [end, num] : {std::pair{"Origin_", origin}, {"Destination_", destination}}) {
        const bool uob = num < 100;
        fields.emplace_back(end + std::string("Num"), num);
        fields.emplace_back(end + std::string("Type"), uob ? "Process-Occurrence" : "Junction");
        fields.emplace_back(end + std::string("Name"), (uob ? "U" : "J") + std::to_string(num));
      }
      Add("Links_in_Scenario", fields);
    }
  }

  void Translate(const std::string& mpxFileName = "") {
    TranslateToProject(program->modelToProject, mpxFileName);
  }
  // The description in the box that the program ended on; empty when it did not end.
  std::string AbortOf(const std::string& mpxFileName = "") {
    if (!EndsProgram([&] { Translate(mpxFileName); })) return {};
    EXPECT_EQ(desktop.pointer, kPointerArrow);
    return desktop.MessageTexts().back();
  }
  // Records of the MPX file that begin with the text, whole, in order.
  Texts Records(const std::string& begin) {
    Texts records;
    std::istringstream lines(ReadFile(mpxPath));
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with(begin)) records.push_back(line.substr(0, line.size() - 1));
    }
    return records;
  }
  Values Activities(const std::string& column) {
    return ColumnOf(Model(), column, "Activity_in_Scenario");
  }
  Values Tasks(const std::string& column) {
    return ColumnOf(Model(), column, "MSP_TASKS", "where TASK_UID > 0 order by TASK_UID");
  }
  // Names of the tasks in the plan's order.
  std::string Plan() {
    std::string plan;
    for (const Value& name : Tasks("TASK_NAME")) plan += (plan.empty() ? "" : " ") + Joined(name);
    return plan;
  }

  std::string mpxPath = folder.Path("plan.mpx");
};

}  // namespace merivane::test
