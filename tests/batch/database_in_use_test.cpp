#include <chrono>
#include <sstream>
#include <thread>

#include "batch/batch.h"
#include "database_fixture.h"

namespace merivane::test {

using namespace store;
using namespace batch;

namespace {

class DatabaseInUse : public ::testing::Test {
 protected:
  DatabaseInUse() { Append(); }

  // Exit status and what was said.
  std::string Append(const RunSetting& setting = {}) {
    std::ostringstream out, err;
    const int status =
        RunBatch({"to-project", MERIVANE_SAMPLES "/onboarding.txt", "--database", plan, "--append"},
                 MERIVANE_BIN, out, err, setting);
    return std::to_string(status) + err.str();
  }
  std::vector<Value> Projects() {
    Connection reader(workspace);
    reader.Open(ConnectionText(plan), OpenMode::kReadOnly);
    return ColumnOf(reader, "PROJ_ID", "MSP_PROJECTS");
  }

  TemporaryFolder folder;
  std::string plan = folder.Path("plan.mdb");
  Workspace workspace;
};

TEST_F(DatabaseInUse, TwoAppendsAtOnceTakeANumberEach) {
  std::string first, second;
  const RunSetting patient{.patience = std::chrono::minutes(2)};  // on a busy machine
  std::thread other([&] { first = Append(patient); });
  second = Append(patient);
  other.join();
  EXPECT_EQ(first + second, "00");
  EXPECT_EQ(Projects(), (std::vector<Value>{1, 2, 3}));
}

TEST_F(DatabaseInUse, AnAppendThatWaitedInVainTakesNothingFromTheOther) {
  Connection writer(workspace);
  writer.Open(ConnectionText(plan));
  Recordset projects;
  projects.OpenDynamic("select * from MSP_PROJECTS", &writer);
  projects.AddNew({"PROJ_ID"}, {9});
  const std::string told = Append({.patience = kBrief});
  EXPECT_EQ(told.front(), '1');
  EXPECT_TRUE(told.find("is in use by another program") != std::string::npos) << told;
  writer.Commit();
  EXPECT_EQ(Projects(), (std::vector<Value>{1, 9}));
}

}  // namespace
}  // namespace merivane::test
