#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "access_copy.h"
#include "runtime/child_process.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace runtime;

namespace {

// Whether a confined child could do each thing, as a letter: y, or n where it is refused.
std::string Tried(const std::string& source, const std::string& copy, const std::string& other) {
  const ForkedChild child([&](int pipe) {
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
    open(other, O_RDONLY);
    open(other, O_RDWR);
    done += unlink(other.c_str()) == 0 ? 'y' : 'n';
    done += socket(AF_INET, SOCK_STREAM, 0) >= 0 ? 'y' : 'n';
    execl("/bin/true", "true", nullptr);
    done += errno == EPERM ? 'n' : '?';
    done += fork() >= 0 ? 'y' : 'n';
    SendOrExit(pipe, done.data(), done.size());
  });
  std::string told(12, '?');
  const auto deadline = ForkedChild::Clock::now() + std::chrono::minutes(1);
  EXPECT_TRUE(child.Receive(told.data(), told.size(), deadline, [] {}));
  return told;
}

TEST(Confine, LeavesTheSourceToReadAndTheFolderOfTheCopyToWrite) {
  const TemporaryFolder users, temporary;
  const std::string source = users.Write("plan.mdb", "x");
  const std::string other = users.Write("other.txt", "precious");
  const std::string told = Tried(source, temporary.Path("copy.db"), other);
  // Without Landlock or seccomp in the kernel nothing is refused.
  if (told.starts_with("yyyyyyyyy")) GTEST_SKIP() << "no limits for files here: " << told;
  EXPECT_EQ(told, "ynyyyynnnnnn");
  EXPECT_EQ(ReadFile(other), "precious");
}

}  // namespace
}  // namespace merivane::test
