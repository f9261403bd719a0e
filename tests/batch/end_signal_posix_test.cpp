#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "batch_fixture.h"
#include "model_parts.h"

namespace merivane::test {
namespace {

// The program itself, ended by a signal while it is in the middle of its work.
class EndSignal : public Batch {
 protected:
  // Sends the signal once the program writes. How it ended, as waitpid() tells it; what it told is
  // in the file "told".
  int EndedBy(int number, const std::vector<std::string>& arguments) const {
    const pid_t child = fork();
    if (child == 0) Start(arguments);
    for (int i = 0; i < 3000 && !IsThere("plan.mdb-journal"); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    kill(child, number);
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }

  TemporaryFolder temporary;

 private:
  [[noreturn]] void Start(std::vector<std::string> arguments) const {
    setenv("TMPDIR", temporary.Path("").c_str(), 1);
    dup2(open(temporary.Path("told").c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    std::string program = MERIVANE_BIN "/merivane-batch";
    std::vector<char*> words = {program.data()};
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    execv(program.c_str(), words.data());
    _exit(EXIT_FAILURE);
  }
};

// Enough units that a translation of them is under way for a while.
std::string LongModel() {
  Parts parts;
  std::string units;
  for (int number = 1; number <= 10000; ++number) {
    units += UnitOf(std::to_string(number), number % 2 == 1 ? "Cut" : "Sand", "");
  }
  parts.scenarios = Scenario("1", "Shop", "", units);
  return FileText(ModelOf(parts));
}

TEST_F(EndSignal, UndoesTheRunAndLeavesNothingTemporary) {
  const std::string longModel = folder.Write("long.txt", LongModel());
  Succeed("to-project %onboarding.txt --database @plan.mdb --mpx @plan.mpx");
  const auto before = Files();
  for (const int number : {SIGTERM, SIGINT}) {
    for (const std::string how : {"--append", "--overwrite"}) {
      SCOPED_TRACE(how);
      const int status =
          EndedBy(number, {"to-project", longModel, "--database", folder.Path("plan.mdb"), how,
                           "--mpx", folder.Path("plan.mpx"), "--force"});
      ASSERT_TRUE(WIFSIGNALED(status)) << status;
      EXPECT_EQ(WTERMSIG(status), number);
      EXPECT_EQ(temporary.Awaited("told"), "merivane-batch: the run was ended by a signal.\n");
      EXPECT_EQ(Files(), before);
      EXPECT_TRUE(fs::is_empty(temporary.Path("")));
    }
  }
}

}  // namespace
}  // namespace merivane::test
