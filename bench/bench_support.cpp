#include "bench_support.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace merivane::bench {

namespace {

struct Ended {
  int status;
  rusage usage;
  double megabytesRead = 0;
  double megabytesWritten = 0;
};

// A child that has ended and is waited for still tells what it read and wrote.
void TellTransfers(pid_t child, Ended& ended) {
  siginfo_t info{};
  waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT);
  std::ifstream counts("/proc/" + std::to_string(child) + "/io");
  std::string name;
  for (double bytes = 0; counts >> name >> bytes;) {
    if (name == "rchar:") ended.megabytesRead = bytes / 1e6;
    if (name == "wchar:") ended.megabytesWritten = bytes / 1e6;
  }
}

Ended Start(const std::function<void()>& work) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no new process");
  if (child == 0) {
    try {
      work();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      _exit(1);
    }
    _exit(0);
  }
  Ended ended{};
  TellTransfers(child, ended);
  wait4(child, &ended.status, 0, &ended.usage);
  return ended;
}

void Become(std::vector<std::string> command, const TemporaryFolder& folder) {
  std::filesystem::current_path(folder.File(""));
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  std::vector<char*> words;
  for (std::string& word : command) words.push_back(word.data());
  words.push_back(nullptr);
  execvp(words.front(), words.data());
}

double SecondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Cost RunOnce(const std::vector<std::string>& command, const TemporaryFolder& folder) {
  constexpr int kDoneWithMessages = 3;
  const auto start = std::chrono::steady_clock::now();
  const Ended ended = Start([&] { Become(command, folder); });
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
  const int status = WIFEXITED(ended.status) ? WEXITSTATUS(ended.status) : -1;
  if (status != 0 && status != kDoneWithMessages) {
    std::string words;
    for (const std::string& word : command) words += word + " ";
    throw std::runtime_error(words + "ends with " + std::to_string(status));
  }
  return {SecondsOf(ended.usage.ru_utime) + SecondsOf(ended.usage.ru_stime),
          wall.count(),
          static_cast<double>(ended.usage.ru_maxrss) / 1024.0,
          ended.megabytesRead,
          ended.megabytesWritten,
          0};
}

}  // namespace

double CountInstructions(const std::vector<std::string>& command, const TemporaryFolder& folder,
                         const std::string& within) {
  const std::string counts = folder.File("counts");
  std::vector<std::string> wrapped{"valgrind"};
  if (within.empty()) {
    wrapped.insert(wrapped.end(),
                   {"--tool=cachegrind", "--cache-sim=no", "--cachegrind-out-file=" + counts});
  } else {
    wrapped.insert(wrapped.end(), {"--tool=callgrind", "--toggle-collect=" + within,
                                   "--callgrind-out-file=" + counts});
  }
  wrapped.insert(wrapped.end(), command.begin(), command.end());
  RunOnce(wrapped, folder);
  std::istringstream lines(ReadFile(counts));
  constexpr std::string_view kTotal = "summary: ";
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(kTotal)) return std::stod(line.substr(kTotal.size())) / 1e6;
  }
  throw std::runtime_error("no counts in " + counts);
}

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "merivane-bench-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

std::string ReadFile(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

Cost Measure(const std::vector<std::string>& command, const TemporaryFolder& folder,
             const std::function<void()>& prepare, bool instructions) {
  constexpr int kRuns = 3;
  Cost least;
  for (int run = 0; run < kRuns; ++run) {
    prepare();
    const Cost cost = RunOnce(command, folder);
    if (run == 0 || cost.seconds < least.seconds) least = cost;
  }
  if (instructions) {
    prepare();
    least.instructions = CountInstructions(command, folder);
  }
  return least;
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double PeakMemory(const std::function<void()>& work) {
  constexpr double kKibibytes = 1024;
  return static_cast<double>(Start(work).usage.ru_maxrss) / kKibibytes;
}

void InChild(const std::function<void()>& work) {
  if (Start(work).status != 0) throw std::runtime_error("the inputs can't be made");
}

}  // namespace merivane::bench
