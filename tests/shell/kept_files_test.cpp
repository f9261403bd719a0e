#include "shell/kept_files.h"

#include "database_fixture.h"

namespace merivane::test {

using namespace shell;

namespace {

namespace fs = std::filesystem;

class KeptFilesTest : public DatabaseFixture {};

// Its temporary name would be cleared away by a run on a later day.
TEST_F(KeptFilesTest, ACopyThatCanNotBePutBackIsKeptUnderALastingName) {
  const std::string before = ReadFile(databasePath);
  KeptFiles kept;
  kept.KeepDatabase(program->workspace, databasePath, KeptFiles::Copy::kUntilDone);
  fs::remove(databasePath);
  fs::create_directories(databasePath + "/folder");
  EXPECT_EQ(kept.PutBack(),
            std::vector<std::string>{databasePath + " can't be put back; as it was it is kept in " +
                                     databasePath + ".bak."});
  EXPECT_EQ(ReadFile(databasePath + ".bak"), before);
}

}  // namespace
}  // namespace merivane::test
