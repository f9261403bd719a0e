#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "environment.h"
#include "platform/program_run.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace platform;

namespace {

using namespace std::string_literals;

class ProgramStartTest : public testing::Test {
 protected:
  std::string Script(const std::string& name, const std::string& body) const {
    std::string path = folder_.Write(name, "#!/bin/sh\n" + body);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }

  // Prints into `out` in one step: its arguments line by line, unless told otherwise.
  std::string Printer(const std::string& name, const std::string& print = "printf '%s\\n' \"$@\"",
                      const std::string& then = "") const {
    const std::string part = " '" + folder_.Path("part") + "'";
    return Script(name,
                  print + " >" + part + "\nmv" + part + " '" + folder_.Path("out") + "'\n" + then);
  }

  TemporaryFolder folder_;
};

TEST_F(ProgramStartTest, WordsEndAtBlanksOutsideQuotes) {
  const std::string plain = Printer("plain");
  const std::string blank = Printer("with blank");
  const std::pair<std::string, std::string> cases[] = {
      {plain + "  one \t two", "one\ntwo\n"},
      {"\"" + blank + "\" \"a  b\"c \"\" $HOME * \\x 'q r'", "a  bc\n\n$HOME\n*\n\\x\n'q\nr'\n"},
      {plain + " \"open end", "open end\n"},
      {plain + " seen\0 unseen"s, "seen\n"}};
  for (const auto& [commandLine, output] : cases) {
    ASSERT_TRUE(StartDetached(commandLine)) << commandLine;
    EXPECT_EQ(folder_.Awaited("out"), output) << commandLine;
  }
}

TEST_F(ProgramStartTest, TheProgramLivesOnItsOwn) {
  const std::string end = folder_.Path("end");
  ASSERT_EQ(mkfifo(end.c_str(), 0600), 0);
  ASSERT_TRUE(StartDetached(Printer("waits", "echo $$", "read line < '" + end + "'\n")));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_NE(getsid(std::stoi(folder_.Awaited("out"))), getsid(0));
  std::ofstream(end) << "end\n";
}

TEST_F(ProgramStartTest, WhatIsNoProgramIsToldSo) {
  for (const std::string& commandLine :
       {""s, "  "s, "\"\" x"s, folder_.Path("none"), folder_.Path("."),
        folder_.Write("text", "no program"), "merivane-no-such-program x"s}) {
    EXPECT_FALSE(StartDetached(commandLine)) << commandLine;
  }
}

TEST_F(ProgramStartTest, PagesGoToTheDesktopsOpener) {
  const EnvironmentVariable path("PATH");
  const std::string saved = std::getenv("PATH");
  path.Set(folder_.Path("."));
  EXPECT_EQ(OpenInBrowser("https://example.org/"), 2);
  Printer("xdg-open");
  path.Set(folder_.Path(".") + ":" + saved);
  EXPECT_GE(OpenInBrowser("https://example.org/a b?\"c\""), 33);
  EXPECT_EQ(folder_.Awaited("out"), "https://example.org/a b?\"c\"\n");
  Script("xdg-open", "sleep 0.1; exit 4\n");
  int turns = 0;
  EXPECT_EQ(OpenInBrowser("https://example.org/", [&] { ++turns; }), 2);
  EXPECT_GT(turns, 0);
}

}  // namespace
}  // namespace merivane::test
