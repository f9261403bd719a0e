#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <vector>

#include "platform/program_run.h"
#include "runtime/child_process.h"

namespace merivane::platform {

using namespace runtime;

namespace {

std::vector<std::string> Words(const std::string& commandLine) {
  std::vector<std::string> words;
  bool quoted = false;
  bool inWord = false;
  for (const char* at = commandLine.c_str(); *at != '\0'; ++at) {
    if (!quoted && (*at == ' ' || *at == '\t')) {
      inWord = false;
      continue;
    }
    if (!inWord) words.emplace_back();
    inWord = true;
    if (*at == '"') {
      quoted = !quoted;
    } else {
      words.back() += *at;
    }
  }
  return words;
}

// In the last child: becomes the program, or reports the failure through the pipe.
[[noreturn]] void BecomeProgram(char* const* arguments, int report) {
  const int null = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(null, stream);
  if (null > STDERR_FILENO) close(null);
  execvp(arguments[0], arguments);
  const char failed = 1;
  while (write(report, &failed, 1) < 0 && errno == EINTR) {
  }
  _exit(127);
}

// The pipe closes by itself once the program runs, so an empty answer is success.
bool ReadSuccess(int pipeEnd) {
  char failed = 0;
  ssize_t got = 0;
  do {
    got = read(pipeEnd, &failed, 1);
  } while (got < 0 && errno == EINTR);
  return got == 0;
}

void WaitFor(pid_t child) {
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

std::vector<char*> ArgumentsOf(std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return arguments;
}

// Not by a ForkedChild, which ends with this program: what is started here outlives it. The child
// between leads a new session and ends at once: what it runs belongs to the system's first process
// then, which collects it. Gives the end of the pipe that `run` has the other end of;
// -1 where nothing can be started.
template <typename Run>
int RunDetached(const Run& run) {
  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return -1;
  const pid_t between = fork();
  if (between == 0) {
    setsid();
    const pid_t last = fork();
    if (last == 0) run(report[1]);
    if (last < 0) (void)!write(report[1], "\1", 1);
    _exit(0);
  }
  close(report[1]);
  if (between > 0) {
    WaitFor(between);
    return report[0];
  }
  close(report[0]);
  return -1;
}

bool StartWords(std::vector<std::string> words) {
  if (words.empty() || words.front().empty()) return false;
  const std::vector<char*> arguments = ArgumentsOf(words);
  const int report = RunDetached([&](int pipe) { BecomeProgram(arguments.data(), pipe); });
  if (report < 0) return false;
  const bool started = ReadSuccess(report);
  close(report);
  return started;
}

// Starts the program, and writes one byte once it has ended: 0 for its success.
[[noreturn]] void WatchProgram(char* const* arguments, int pipe) {
  const int report = KeepAlone(pipe);
  signal(SIGPIPE, SIG_IGN);
  const pid_t program = fork();
  if (program == 0) BecomeProgram(arguments, report);
  int status = 1;
  if (program > 0) {
    while (waitpid(program, &status, 0) < 0 && errno == EINTR) {
    }
  }
  const char failed = status == 0 ? 0 : 1;
  (void)!write(report, &failed, 1);
  _exit(0);
}

// False where the program can't be started, or fails within `patience`.
bool OpensWith(std::vector<std::string> words, const std::function<void()>& meanwhile) {
  constexpr int kSlice = 20;  // milliseconds
  constexpr int kPatience = 3000;
  const std::vector<char*> arguments = ArgumentsOf(words);
  const int report = RunDetached([&](int pipe) { WatchProgram(arguments.data(), pipe); });
  if (report < 0) return false;
  char failed = 0;
  for (int waited = 0; waited < kPatience; waited += kSlice) {
    pollfd ready{.fd = report, .events = POLLIN, .revents = 0};
    if (poll(&ready, 1, kSlice) > 0) {
      (void)!read(report, &failed, 1);
      break;
    }
    meanwhile();
  }
  close(report);
  return failed == 0;
}

}  // namespace

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::string ProgramFolder(const std::string& name) {
  std::error_code error;
  auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) program = std::filesystem::absolute(name, error);
  return program.parent_path().string();
}

void TakeLibrariesOfTheSystemAlone() {}

void RememberFile(const std::string& /*path*/) {}

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

int OnUtf8Terminal(const std::function<int()>& run) { return run(); }

bool StartDetached(const std::string& commandLine) { return StartWords(Words(commandLine)); }

int OpenInBrowser(const std::string& url, const std::function<void()>& meanwhile) {
  constexpr int kStarted = 33;
  constexpr int kNoOpener = 2;
  return OpensWith({"xdg-open", url}, meanwhile) ? kStarted : kNoOpener;
}

}  // namespace merivane::platform
