#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "access_copy.h"
#include "temporary_folder.h"

namespace merivane::test {

namespace {

// Whether a confined child could do each thing, as a letter: y, or n where it is refused.
std::string Tried(const std::string& source, const std::string& copy,
                  const std::vector<std::string>& others) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    store::Confine(source, copy);
    std::string done;
    const auto open = [&](const std::string& path, int how) {
      const int file = ::open(path.c_str(), how, 0600);
      done += file >= 0 ? 'y' : 'n';
      if (file >= 0) close(file);
    };
    open(source, O_RDONLY);
    open(source, O_RDWR);
    open(copy, O_RDWR | O_CREAT);
    open(copy + "-journal", O_RDWR | O_CREAT);
    done += unlink((copy + "-journal").c_str()) == 0 ? 'y' : 'n';
    open("/etc/passwd", O_RDONLY);
    for (const std::string& other : others) {
      open(other, O_RDONLY);
      open(other, O_RDWR);
      done += unlink(other.c_str()) == 0 ? 'y' : 'n';
    }
    done += socket(AF_INET, SOCK_STREAM, 0) >= 0 ? 'y' : 'n';
    execl("/bin/true", "true", nullptr);
    done += errno == EPERM ? 'n' : '?';
    done += fork() >= 0 ? 'y' : 'n';
    const auto written = write(ends[1], done.data(), done.size());
    _exit(written > 0 ? 0 : 1);
  }
  close(ends[1]);
  std::string told(64, '\0');
  const ssize_t got = read(ends[0], told.data(), told.size());
  told.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  return told;
}

TEST(Confine, LeavesTheSourceToReadAndTheFolderOfTheCopyToWrite) {
  const TemporaryFolder users, temporary;
  const std::string source = users.Write("plan.mdb", "x");
  const std::string other = users.Write("other.txt", "precious");
  const std::string told = Tried(source, temporary.Path("copy.db"), {other});
  // Without Landlock or seccomp in the kernel nothing is refused.
  if (told.starts_with("yyyyyyyyy")) GTEST_SKIP() << "no limits for files here: " << told;
  EXPECT_EQ(told,
            "ynyyyy"
            "nnn"
            "nnn");
  EXPECT_EQ(ReadFile(other), "precious");
}

}  // namespace
}  // namespace merivane::test
