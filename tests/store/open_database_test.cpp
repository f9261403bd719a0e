#include "open_database.h"

#include "store_fixture.h"

namespace merivane::test {

namespace {

class OpenedDatabase : public StoreFixture {
 protected:
  std::string Pragma(OpenMode mode, const std::string& name) {
    const auto engine = OpenDatabase(path, mode, {}, nobody, {});
    const StatementHandle answer = PrepareStatement(engine->Database(), "pragma " + name, path);
    return sqlite3_step(answer.get()) == SQLITE_ROW ? ColumnText(answer.get(), 0) : "";
  }
  Work nobody;
};

TEST_F(OpenedDatabase, HasTheSettingsThatKeepItSafeAndSmall) {
  connection.Close();
  struct Row {
    const char* name;
    const char* written;
    const char* read;
    const char* copied;
  };
  for (const Row& row :
       {Row{"synchronous", "1", "1", "1"}, Row{"temp_store", "2", "2", "1"},
        Row{"cache_size", "-16384", "-16384", "-65536"},
        Row{"journal_mode", "delete", "delete", "delete"}, Row{"trusted_schema", "0", "0", "0"}}) {
    EXPECT_EQ(Pragma(OpenMode::kReadWrite, row.name), row.written) << row.name;
    EXPECT_EQ(Pragma(OpenMode::kReadOnly, row.name), row.read) << row.name;
    EXPECT_EQ(Pragma(OpenMode::kCopy, row.name), row.copied) << row.name;
  }
  EXPECT_EQ(sqlite3_hard_heap_limit64(-1), 512 << 20);
  const auto open = OpenDatabase(path, OpenMode::kReadOnly, {}, nobody, {});
  EXPECT_GT(sqlite3_memory_used(), 0);  // the limit counts nothing without SQLite's statistics
}

}  // namespace
}  // namespace merivane::test
