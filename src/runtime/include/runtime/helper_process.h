// A program that lies beside this one and works something out for it, so that a library which
// breaks there breaks nothing here. For Windows; elsewhere a copy of this process does it
// (child_process.h).
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace merivane::runtime {

struct HelperLimits {
  std::size_t memory;           // bytes
  std::chrono::seconds cpu{0};  // 0: none
  bool apart = false;           // reaches neither the clipboard nor windows of others
};

// The program has this user's rights without a privilege, is alone in a job that keeps its limits,
// and ends with the object.
class HelperProcess {
 public:
  // `name` is a file in the folder of this program. Its standard input gives `input`, its standard
  // output is kept.
  HelperProcess(const std::string& name, const std::vector<std::string>& words,
                const HelperLimits& limits, std::string_view input = {});
  ~HelperProcess();
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  static bool IsThere(const std::string& name);

  bool HasStarted() const;
  // REQUIRES: it has started.
  bool HasEnded(std::chrono::milliseconds wait) const;

  void Stop();

  // REQUIRES: it has ended.
  bool HasSucceeded() const;
  bool HasUsedUpItsTime() const;
  std::string Output() const;

 private:
  struct System;
  std::unique_ptr<System> system_;
};

// Called by such a program first: it will load no library of others and make no code.
void GiveUpRights();

}  // namespace merivane::runtime
