// Databases that were made to hang the program or to fill the memory.
#include <gmock/gmock.h>
#ifndef _WIN32
#include <sys/resource.h>
#endif

#include "store_fixture.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;

class HostileFiles : public StoreFixture {
 protected:
  HostileFiles() { connection.Close(); }

  // What a look at the table's first rows ends in; the memory's high-water mark is looked at too.
  std::string Failure(const std::string& sql, OpenMode mode = OpenMode::kReadOnly) {
    std::string description = "none";
    ErrorOf(
        [&] {
          Opened reader(workspace, path, mode);
          Recordset set = Static(sql, reader);
          set.RecordCount();
          for (int field = 0; field < set.FieldCount(); ++field) set.Field(field);
        },
        &description);
#ifndef _WIN32
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    EXPECT_LT(usage.ru_maxrss, 700000) << "kilobytes";
#endif
    return description;
  }
  // Writes a number of two bytes, most significant first, into the file.
  static void Patch(std::string& bytes, std::size_t at, std::size_t value) {
    bytes[at] = static_cast<char>(value >> 8U);
    bytes[at + 1] = static_cast<char>(value & 0xFFU);
  }
};

TEST_F(HostileFiles, OnlyTablesWithoutTricksAreRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"create view MSP_TASKS as with recursive n(x) as (select 1 union all select x + 1 from n)"
       " select x as TASK_UID from n",
       "'MSP_TASKS' in the database"},
      {"create virtual table MSP_TASKS using fts4(TASK_UID)", "'MSP_TASKS' in the database"},
      {"create table MSP_TASKS (TASK_UID, N text as (hex(zeroblob(8000000))))",
       "The column 'N' of the table 'MSP_TASKS'"},
      {"create table MSP_TASKS (TASK_UID, TASK_NAME text);"
       "insert into MSP_TASKS values (1, hex(zeroblob(9000000)))",
       "in the column 'TASK_NAME' of the table 'MSP_TASKS'"},
  };
  for (const auto& [make, told] : cases) {
    std::filesystem::remove(path);
    RawDatabase(path).Run(make);
    EXPECT_THAT(Failure("select * from MSP_TASKS"), HasSubstr(told)) << make;
  }
}

TEST_F(HostileFiles, TriggersDoNotRun) {
  RawDatabase(path).Run(
      "create trigger Spread after update on T begin update Empty set Num = 1; "
      "delete from T where Num > 1; end");
  connection.Open(ConnectionText(path));
  Rename(connection, "x");
  EXPECT_EQ(All("select * from T"), "x b c d e ");
}

// Every child of the table's root is one and the same page, and so on for some levels: more rows
// than anybody can count, in a file of a few pages.
TEST_F(HostileFiles, ATableWhosePagesLeadToEachOtherWithoutEndIsDamaged) {
  constexpr std::size_t kPage = 4096, kCells = 400, kHeader = 12;
  std::filesystem::remove(path);
  {
    RawDatabase raw(path);
    raw.Run("create table T (Note text); insert into T values (zeroblob(100))");
    for (int level = 0; level < 8; ++level) {  // pages that no table needs
      raw.Run("create table X" + std::to_string(level) + " (A)");
    }
  }
  std::string bytes = ReadFile(path);
  const std::string leaf = bytes.substr(kPage, kPage);
  std::string inner(kPage, '\0');
  inner[0] = 5;
  Patch(inner, 3, kCells);
  const std::size_t content = kPage - kCells * 5;
  Patch(inner, 5, content);
  for (std::size_t page = 2; page < 9; ++page) {
    for (std::size_t cell = 0; cell < kCells; ++cell) {
      Patch(inner, kHeader + 2 * cell, content + 5 * cell);
      Patch(inner, content + 5 * cell + 2, page + 1);  // the page to the left of this key
      inner[content + 5 * cell + 4] = 1;
    }
    Patch(inner, 10, page + 1);
    bytes.replace((page - 1) * kPage, kPage, page == 8 ? leaf : inner);
  }
  EXPECT_EQ(Failure("select * from T", OpenMode::kReadWrite), "none");
  folder.Write("small.mdb", bytes);
  for (const OpenMode mode : {OpenMode::kReadOnly, OpenMode::kReadWrite}) {
    EXPECT_THAT(Failure("select * from T", mode), HasSubstr("is damaged"));
  }
}

}  // namespace
}  // namespace merivane::test
