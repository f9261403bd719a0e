// The names that a run was given, held against each other before it begins.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace merivane::shell {

struct NamedFile {
  std::string role;  // as the user knows it: "the model", "--mpx"
  std::string path;  // UTF-8, trimmed; empty: not given
  bool written = false;
  std::string askedWord = {};  // must be said where a file stands already; empty: nothing
};

// A sentence that refuses the run, or nothing: two names stand for one file (by links of either
// kind too) that the run would write, one that it would write has no folder, or a file stands where
// its word was not said.
std::optional<std::string> RefusalOf(const std::vector<NamedFile>& files);

}  // namespace merivane::shell
