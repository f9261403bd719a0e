#include <sqlite3.h>

#include <sstream>

#include "batch/batch.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace batch;

namespace {

namespace fs = std::filesystem;

// A writer was killed in the middle of its transaction: half of it is in the file, and the journal
// beside it tells what stood there before.
class CrashedDatabase : public ::testing::Test {
 protected:
  CrashedDatabase() {
    Run({"to-project", MERIVANE_SAMPLES "/onboarding.txt", "--database", whole, "--mpx", mpx});
    sqlite3* writer = nullptr;
    sqlite3_open(whole.c_str(), &writer);
    sqlite3_exec(writer,
                 "pragma cache_size = 2; begin;"
                 "update MSP_TASKS set TASK_NAME = 'lost' || hex(randomblob(4000))",
                 nullptr, nullptr, nullptr);
    fs::copy_file(whole, crashed);
    fs::copy_file(whole + "-journal", crashed + "-journal");
    sqlite3_close(writer);
  }

  std::string Run(const std::vector<std::string>& arguments) {
    std::ostringstream out, err;
    const int status = RunBatch(arguments, MERIVANE_BIN, out, err);
    return std::to_string(status) + out.str() + err.str();
  }

  TemporaryFolder folder;
  std::string whole = folder.Path("whole.mdb");
  std::string crashed = folder.Path("crashed.mdb");
  std::string mpx = folder.Path("plan.mpx");
};

TEST_F(CrashedDatabase, IsReadInACopyAndRecoveredWhereAMergeWrites) {
  const std::string before = ReadFile(crashed);
  const std::string journal = ReadFile(crashed + "-journal");
  EXPECT_EQ(Run({"projects", crashed}), Run({"projects", whole}));
  const auto write = [&](std::vector<std::string> source, const std::string& text) {
    source.insert(source.begin(), "to-model");
    source.insert(source.end(), {"--output", folder.Path(text), "--quiet"});
    EXPECT_EQ(Run(source), "0") << text;
    return ReadFile(folder.Path(text));
  };
  EXPECT_EQ(write({"--database", crashed, "--project", "1"}, "a.txt"),
            write({"--database", whole, "--project", "1"}, "b.txt"));
  EXPECT_EQ(ReadFile(crashed), before);
  EXPECT_EQ(ReadFile(crashed + "-journal"), journal);
  EXPECT_EQ(write({"--mpx", mpx, "--interim", crashed, "--merge", "1"}, "c.txt"),
            write({"--mpx", mpx, "--interim", whole, "--merge", "1"}, "d.txt"));
  EXPECT_FALSE(fs::exists(crashed + "-journal"));
}

}  // namespace
}  // namespace merivane::test
