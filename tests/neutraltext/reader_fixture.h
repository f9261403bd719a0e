// Reads small models into a fresh database as project 1.
#pragma once

#include <gmock/gmock.h>

#include "database_fixture.h"
#include "model_text.h"

namespace merivane::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReaderTest : public DatabaseFixture {
 protected:
  ReaderTest() { OpenForModel(); }
  ModelToProject& State() { return program->modelToProject; }

  // The boxes of the read.
  std::vector<std::string> ReadBytes(std::string_view bytes) {
    desktop.shown.clear();
    ReadNeutralText(State(), folder.Write("model.txt", bytes));
    return desktop.MessageTexts();
  }
  std::vector<std::string> Read(std::string text) {
    for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos;) {
      text.replace(at, 1, "\r\n");
    }
    return ReadBytes(text);
  }
  std::vector<std::string> ReadScenarios(std::string_view scenarios) {
    return Read(With(kModel, {{kScenario, scenarios}}));
  }

  // What the database holds in a column, the rows joined by bars.
  std::string Column(const std::string& column, const std::string& table) {
    std::string text;
    for (const Value& value : ColumnOf(Model(), column, table)) {
      text += (text.empty() ? "" : "|") + (value.IsNull() ? "Null" : ToText(value));
    }
    return text;
  }
};

// The box of an error that ends a read.
inline std::string Box(int error) { return ErrorText(error) + "\r\n"; }

}  // namespace merivane::test
