#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
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
}

TEST(ChildProcess, IsHeldToItsLimitsAndTellsWhatItSentUntilThen) {
  const auto deadline = ForkedChild::Clock::now() + std::chrono::minutes(1);
  const auto send = [](int pipe) { SendOrExit(pipe, "begun", 5); };
  ForkedChild greedy(
      [&](int pipe) {
        send(pipe);
        const int file = open("/tmp", O_TMPFILE | O_WRONLY, 0600);
        (void)!write(file, "four", 4);
        (void)!write(file, "too much", 8);
        send(pipe);
      },
      {.fileBytes = 4});
  EXPECT_EQ(greedy.ReceiveAll(deadline, [] {}), "begun");
  EXPECT_FALSE(greedy.HasUsedUpItsTime());
  ForkedChild endless([](int) { std::raise(SIGXCPU); });
  EXPECT_EQ(endless.ReceiveAll(deadline, [] {}), "");
  EXPECT_TRUE(endless.HasUsedUpItsTime());
  const ForkedChild limited(
      [](int pipe) {
        rlimit limit{};
        getrlimit(RLIMIT_CPU, &limit);
        SendOrExit(pipe, &limit.rlim_cur, sizeof limit.rlim_cur);
      },
      {.cpuSeconds = 7});
  rlim_t seconds = 0;
  EXPECT_TRUE(limited.Receive(&seconds, sizeof seconds, deadline, [] {}));
  EXPECT_EQ(seconds, 7U);
  const auto takeMuch = [](int pipe) {
    const std::vector<char> much(std::size_t{256} << 20U, 'x');
    SendOrExit(pipe, &much.back(), 1);
  };
  EXPECT_EQ(ForkedChild(takeMuch).ReceiveAll(deadline, [] {}), "x");
  EXPECT_EQ(ForkedChild(takeMuch, {.memoryBytes = 64 << 20}).ReceiveAll(deadline, [] {}), "");
  const ForkedChild slow([](int) { pause(); });
  EXPECT_FALSE(slow.ReceiveAll(ForkedChild::Clock::now() + std::chrono::milliseconds(50), [] {}));
}

}  // namespace
}  // namespace merivane::test
