// Reads small models into a fresh database as project 1.
#pragma once

#include <gmock/gmock.h>

#include "database_fixture.h"
#include "model_text.h"
#include "neutraltext/modGlobal.h"

namespace merivane::test {

using namespace neutraltext;

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReaderTest : public DatabaseFixture {
 protected:
  ReaderTest() { OpenForModel(); }
  ModelToProject& State() { return program->modelToProject; }

  // The boxes of the read.
  std::vector<std::string> ReadBytes(std::string_view bytes) {
    desktop.boxes.clear();
    ReadNeutralText(State(), folder.Write(std::to_string(++reads_) + ".txt", bytes));
    return desktop.MessageTexts();
  }
  std::vector<std::string> Read(const std::string& text) { return ReadBytes(FileText(text)); }
  std::vector<std::string> ReadScenarios(std::string_view scenarios) {
    return Read(With(kModel, {{kScenario, scenarios}}));
  }

  // What a table holds in some columns: rows joined by bars, columns by semicolons.
  std::string Columns(const std::string& table, const std::vector<std::string>& columns) {
    std::string text;
    for (const std::string& column : columns) {
      if (!text.empty()) text += "; ";
      std::string bar;
      for (const Value& value : ColumnOf(Model(), column, table)) {
        text += bar + (value.IsNull() ? "Null" : ToText(value));
        bar = "|";
      }
    }
    return text;
  }

  // Rows of the project that was read last.
  std::size_t CountOfRows() {
    std::size_t count = 0;
    for (const char* table :
         {"Activity_Pool", "Object_Pool", "Fact_Pool", "Misc", "Scenario", "Activity_in_Scenario",
          "Object_in_Activity_in_Scenario", "Junctions_in_Scenario", "Facts_in_Junction",
          "Links_in_Scenario", "OSTN_List"}) {
      count +=
          CountRows(Model(), table, "where Msp_ProjID = " + std::to_string(State().gMspProjId));
    }
    return count;
  }

 private:
  int reads_ = 0;  // each read has a file of its own: replacing one is slow on some file systems
};

// The box of an error that ends a read.
inline std::string Box(int error) { return ErrorText(error) + "\r\n"; }

}  // namespace merivane::test
