// A statement as the program would write it: through record sets of both kinds.
#include "memory_database.h"
#include "runtime/run_time_error.h"
#include "store/connection.h"
#include "store/recordset.h"

namespace merivane::fuzz {

using namespace store;

namespace {

constexpr int kMostRows = 8;
constexpr int kFilled = 6;  // columns

std::unique_ptr<MemoryDatabase> RowsInMemory() {
  auto database = TemplateInMemory();
  Workspace workspace;
  Connection connection(workspace);
  connection.Open(ConnectionText(database->Path()));
  for (const char* table : {"MSP_TASKS", "Scenario", "Links_in_Scenario", "Activity_Pool"}) {
    Recordset rows;
    rows.OpenDynamic(std::string("select * from ") + table, &connection);
    for (int row = 1; row <= kMostRows; ++row) {
      rows.AddNew();
      for (int field = 0; field < kFilled; ++field) {
        rows.SetField(rows.FieldName(field), row % (field + 2));
      }
      rows.Update();
    }
  }
  connection.Close();
  database->KeepAsImage();
  return database;
}

void Walk(Recordset& rows) {
  for (int row = 0; row < kMostRows && !rows.Eof(); ++row, rows.MoveNext()) {
    for (int field = 0; field < rows.FieldCount(); ++field) {
      rows.Field(field);
      rows.FindField(rows.FieldName(field));
    }
  }
  rows.MoveLast();
  rows.MovePrevious();
  rows.MoveFirst();
}

void Run(const std::string& sql, const std::string& database) {
  Workspace workspace;
  Connection connection(workspace);
  connection.Open(ConnectionText(database));
  try {
    Recordset rows;
    rows.OpenStatic(sql, &connection);
    rows.RecordCount();
    Walk(rows);
  } catch (const RunTimeError&) {
  }
  try {
    Recordset rows;
    rows.OpenDynamic(sql, &connection);
    Walk(rows);
    rows.SetField(rows.FieldName(0), 7);
    rows.AddNew();
    rows.SetField(rows.FieldName(0), 8);
    rows.Update();
    rows.MoveNext();
    rows.MoveFirst();
    rows.Delete();
    Walk(rows);
  } catch (const RunTimeError&) {
  }
  connection.Close();
}

}  // namespace
}  // namespace merivane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace merivane::fuzz;
  static const auto database = RowsInMemory();
  database->Reset();
  Run(std::string(data, data + size), database->Path());
  return 0;
}
