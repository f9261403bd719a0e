#include "large_database.h"

#include <sqlite3.h>

#include <cstdio>
#include <stdexcept>

#include "bench_support.h"
#include "floors.h"
#include "model_generator.h"

namespace merivane::bench {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr int kTasks = 1000;
constexpr int kOtherProjects = 300;

// SQL that copies the rows of project 1 for each other project, table by table.
std::string CopyStatements(const std::string& database) {
  constexpr const char* kStatements =
      "with keys as (select m.name t, p.name k from sqlite_master m, pragma_table_xinfo(m.name) p"
      " where m.type = 'table' and p.hidden = 0 and p.name in ('PROJ_ID', 'Msp_ProjID'))"
      " select 'with recursive n(i) as (select 2 union all select i + 1 from n where i <= ' || ?1 "
      "||"
      " ') insert into \"' || t || '\" (' || group_concat('\"' || p.name || '\"', ', ') ||"
      " ') select ' || group_concat(case p.name when k then 'i' else '\"' || p.name || '\"' end, "
      "', ')"
      " || ' from n, \"' || t || '\" where \"' || k || '\" = 1;'"
      " from keys, pragma_table_xinfo(t) p where p.hidden = 0 group by t";
  sqlite3* handle = nullptr;
  sqlite3_stmt* rows = nullptr;
  if (sqlite3_open(database.c_str(), &handle) != SQLITE_OK ||
      sqlite3_prepare_v2(handle, kStatements, -1, &rows, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(handle));
  }
  sqlite3_bind_int(rows, 1, kOtherProjects);
  std::string statements = "pragma synchronous = off; begin;";
  while (sqlite3_step(rows) == SQLITE_ROW) {
    statements += reinterpret_cast<const char*>(sqlite3_column_text(rows, 0));
  }
  sqlite3_finalize(rows);
  sqlite3_close(handle);
  return statements + "commit;";
}

struct LargeCase {
  const char* name;
  Words arguments;
};

std::vector<LargeCase> Cases() {
  const Words merge{"to-model", "--mpx", "plan.mpx", "--interim", "work.mdb",
                    "--merge",  "1",     "--output", "out.txt",   "--force"};
  const auto with = [&](const char* word) {
    Words words = merge;
    words.emplace_back(word);
    return words;
  };
  return {
      {"projects", {"projects", "work.mdb"}},
      {"to-model --database",
       {"to-model", "--database", "work.mdb", "--project", "1", "--output", "out.txt", "--force"}},
      {"export --xml", {"export", "work.mdb", "--project", "1", "--xml", "out.xml", "--force"}},
      {"--mpx --merge --dry-run", with("--dry-run")},
      {"--mpx --merge --no-backup", with("--no-backup")},
      {"--mpx --merge", merge},
      {"append", {"to-project", "model.txt", "--database", "work.mdb", "--append"}},
  };
}

}  // namespace

void MeasureLargeDatabase(const std::string& program) {
  const TemporaryFolder folder;
  InChild([&] {
    WriteFile(folder.File("model.txt"), GenerateModel(kTasks));
    Measure(
        {program, "to-project", "model.txt", "--database", "plan.mdb", "--mpx", "plan.mpx",
         "--force"},
        folder, [&] { fs::remove(folder.File("plan.mdb")); }, false);
    const std::string database = folder.File("plan.mdb");
    Execute(database, CopyStatements(database));
    // As it is where they were appended one by one: an append numbers the outlines of all.
    Measure(
        {program, "to-project", "model.txt", "--database", "plan.mdb", "--append"}, folder, [] {},
        false);
  });
  std::printf("%d projects of %d tasks, %.0f MB\n\n", kOtherProjects + 1, kTasks,
              static_cast<double>(fs::file_size(folder.File("plan.mdb"))) / 1e6);
  std::printf("| command                   | CPU s | wall s | MB read | MB written |    MB |\n");
  std::printf("|---|---|---|---|---|---|\n");
  const auto reset = [&] {
    for (const char* name : {"work.mdb", "work.mdb.bak", "out.txt", "out.xml"}) {
      fs::remove(folder.File(name));
    }
    fs::copy_file(folder.File("plan.mdb"), folder.File("work.mdb"));
  };
  for (const LargeCase& item : Cases()) {
    Words command{program};
    command.insert(command.end(), item.arguments.begin(), item.arguments.end());
    const Cost cost = Measure(command, folder, reset, false);
    std::printf("| %-25s | %5.2f | %6.2f | %7.1f | %10.1f | %5.0f |\n", item.name, cost.seconds,
                cost.wall, cost.megabytesRead, cost.megabytesWritten, cost.peakMegabytes);
    std::fflush(stdout);
  }
}

}  // namespace merivane::bench
