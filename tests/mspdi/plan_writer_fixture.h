// Rows of a plan, and the XML that is written from them.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "mspdi/plan_writer.h"
#include "raw_database.h"
#include "store/recordset.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace mspdi;

inline constexpr DateTime kMonday{2026, 1, 5, 0};

class Writer : public testing::Test {
 protected:
  Writer() { std::filesystem::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", database); }

  // Rows of the project; blanks part the names of the columns.
  void Add(const std::string& table, const std::string& columns,
           const std::vector<std::vector<Value>>& rows) {
    std::vector<std::string> names = {table.starts_with("MSP_") ? "PROJ_ID" : "Msp_ProjID"};
    std::istringstream words(columns);
    for (std::string name; words >> name;) names.push_back(name);
    Connection connection(workspace);
    connection.Open(ConnectionText(database));
    Recordset set;
    set.OpenDynamic("select * from " + table, &connection);
    for (std::vector<Value> row : rows) {
      row.insert(row.begin(), Value(1));
      set.AddNew(names, std::move(row));
    }
  }
  void Sql(const std::string& statement) {
    EXPECT_EQ(RawDatabase(database).Run(statement), SQLITE_OK) << statement;
  }

  // The file's text; where the schema is at hand, it is valid by it.
  std::string Write(const std::string& path = "") {
    const std::string& source = path.empty() ? database : path;
    Connection connection(workspace);
    connection.Open(ConnectionText(source), OpenMode::kReadOnly);
    warnings = WritePlan(connection, 1, kMonday, xml).warnings;
    const std::string schema = MERIVANE_PLANS "/../mspdi/mspdi.xsd";
    if (std::filesystem::exists(schema) && std::system("xmllint --version 2> /dev/null") == 0) {
      EXPECT_EQ(std::system(("xmllint --noout --schema " + schema + " " + xml).c_str()), 0);
    }
    return ReadFile(xml);
  }

  static void ExpectParts(const std::string& text, const std::vector<const char*>& parts) {
    std::string flat;  // without the indentation
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (text[at] == '\n') {
        while (at + 1 < text.size() && text[at + 1] == ' ') ++at;
      } else {
        flat += text[at];
      }
    }
    for (const char* part : parts) EXPECT_THAT(flat, testing::HasSubstr(part));
  }

  Workspace workspace;
  TemporaryFolder folder;
  std::vector<std::string> warnings;
  std::string database = folder.Path("plan.mdb");
  std::string xml = folder.Path("plan.xml");
};

}  // namespace merivane::test
