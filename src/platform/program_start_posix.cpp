#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "platform/program_start.h"

namespace merivane::platform {

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

// The child between leads a new session and ends at once: the program belongs to the system's
// first process then, which collects it.
bool StartWords(std::vector<std::string> words) {
  if (words.empty() || words.front().empty()) return false;
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return false;
  const pid_t between = fork();
  if (between == 0) {
    setsid();
    const pid_t last = fork();
    if (last == 0) BecomeProgram(arguments.data(), report[1]);
    if (last < 0) (void)!write(report[1], "", 1);
    _exit(0);
  }
  close(report[1]);
  const bool started = between > 0 && ReadSuccess(report[0]);
  close(report[0]);
  if (between > 0) WaitFor(between);
  return started;
}

}  // namespace

bool StartDetached(const std::string& commandLine) { return StartWords(Words(commandLine)); }

int OpenInBrowser(const std::string& url) {
  constexpr int kStarted = 33;
  constexpr int kNoOpener = 2;
  return StartWords({"xdg-open", url}) ? kStarted : kNoOpener;
}

}  // namespace merivane::platform
