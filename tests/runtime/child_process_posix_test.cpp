#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <new>
#include <vector>

#include "runtime/child_process.h"

namespace merivane::test {

using namespace runtime;

namespace {

// True once nobody holds the other end, within five seconds.
bool IsLetGo(int pipe) {
  constexpr int kPatience = 5000;
  pollfd ready{.fd = pipe, .events = POLLIN, .revents = 0};
  char byte = 0;
  return poll(&ready, 1, kPatience) > 0 && read(pipe, &byte, 1) == 0;
}

std::array<int, 2> MakePipe() {
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe(ends.data()), 0);
  return ends;
}

TEST(ChildProcess, HoldsNothingOfItsParentAndEndsWithIt) {
  const auto report = MakePipe();
  const auto screen = MakePipe();
  const pid_t parent = fork();
  if (parent == 0) {
    const pid_t self = getpid();
    if (fork() == 0) {
      DieWithParent(self);
      const int pipe = KeepAlone(report[1]);
      (void)!write(pipe, "x", 1);
      for (;;) pause();
    }
    close(screen[1]);
    for (;;) pause();
  }
  close(report[1]);
  close(screen[1]);
  char byte = 0;
  EXPECT_EQ(read(report[0], &byte, 1), 1);
  EXPECT_TRUE(IsLetGo(screen[0]));  // while the child lives
  kill(parent, SIGKILL);
  waitpid(parent, nullptr, 0);
  EXPECT_TRUE(IsLetGo(report[0]));
  close(report[0]);
  close(screen[0]);
}

// What breaks in a child is told to who waits for it, at once.
TEST(ChildProcess, GivesWhatItWorkedOutOrTellsThatItCameToNothing) {
  const auto deadline = ForkedChild::Clock::now() + std::chrono::minutes(1);
  int beats = 0;
  const auto beat = [&] { ++beats; };
  const ForkedChild sound([](int pipe) {
    usleep(100'000);
    const std::vector<int> many(100'000, 7);  // more than a pipe holds
    SendOrExit(pipe, many.data(), many.size() * sizeof(int));
  });
  std::vector<int> got(100'000);
  EXPECT_TRUE(sound.Receive(got.data(), got.size() * sizeof(int), deadline, beat));
  EXPECT_EQ(got, std::vector<int>(100'000, 7));
  EXPECT_GT(beats, 1);
  EXPECT_FALSE(sound.Receive(got.data(), 1, deadline, beat));
  for (const auto& work : std::initializer_list<std::function<void(int)>>{
           [](int) { std::abort(); }, [](int) { throw std::bad_alloc(); }, [](int) {}}) {
    EXPECT_FALSE(ForkedChild(work).Receive(got.data(), 1, deadline, beat));
  }
  const ForkedChild slow([](int) { pause(); });
  EXPECT_FALSE(
      slow.Receive(got.data(), 1, ForkedChild::Clock::now() + std::chrono::milliseconds(50), beat));
}

}  // namespace
}  // namespace merivane::test
