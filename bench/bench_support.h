// Temporary files, and what a run of a program costs.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace merivane::bench {

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);

struct Cost {
  double seconds = 0;  // of CPU; the least of three runs
  double wall = 0;     // of the same run
  double peakMegabytes = 0;
  double megabytesRead = 0;     // by system calls, from the disk or not
  double megabytesWritten = 0;  // the same
  double instructions = 0;      // millions; 0 where they weren't asked for
};

// Runs the command with `folder` as its working folder, each time after `prepare`. A run that ends
// with another status than 0 or 3 is a runtime_error.
Cost Measure(const std::vector<std::string>& command, const TemporaryFolder& folder,
             const std::function<void()>& prepare, bool instructions);

// Millions of instructions of one run; where `within` names a function (a pattern of valgrind's),
// of it and all that it calls alone.
double CountInstructions(const std::vector<std::string>& command, const TemporaryFolder& folder,
                         const std::string& within = "");

// Of the work in this process, by the wall clock.
double Seconds(const std::function<void()>& work);
// Peak resident memory in MiB of a child that does the work.
double PeakMemory(const std::function<void()>& work);

// Does the work in a child: a process hands its own peak memory on to what it starts.
void InChild(const std::function<void()>& work);

}  // namespace merivane::bench
