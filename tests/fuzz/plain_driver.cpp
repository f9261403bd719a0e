// Runs a target without the fuzzing runtime of clang, on the release build's own flags or under the
// sanitizers: each input as it is, and then, until the time is up, changed by a fixed rule. What
// ends the program is left in the file "abort".
//   fuzz_TARGET SECONDS LONGEST FILE_OR_FOLDER...
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::string current;

void KeepInput(int signal) {
  std::ofstream("abort", std::ios::binary) << current;
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void Try(std::string input) {
  current = std::move(input);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(current.data()), current.size());
}

std::vector<std::string> ReadAll(int count, char** names) {
  std::vector<std::string> inputs;
  for (int i = 0; i < count; ++i) {
    if (!fs::is_directory(names[i])) {
      inputs.push_back(merivane::fuzz::Content(names[i]));
      continue;
    }
    for (const auto& entry : fs::directory_iterator(names[i])) {
      inputs.push_back(merivane::fuzz::Content(entry.path()));
    }
  }
  return inputs;
}

class Changer {
 public:
  // One to four changes: a piece cut out, doubled, moved in from another input, or a byte set.
  std::string Change(std::string input, const std::string& other) {
    for (std::size_t changes = Below(4) + 1; changes > 0; --changes) {
      const std::size_t at = Below(input.size() + 1);
      const std::size_t length = Below(std::min<std::size_t>(input.size() - at, 64) + 1);
      switch (Below(4)) {
        case 0:
          input.erase(at, length);
          break;
        case 1:
          input.insert(at, input.substr(at, length));
          break;
        case 2:
          input.insert(at, other.substr(Below(other.size() + 1), Below(64)));
          break;
        default:
          if (at < input.size()) input[at] = static_cast<char>(Below(256));
      }
    }
    return input;
  }
  std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

 private:
  std::mt19937_64 random_{1};
};

}  // namespace

int main(int argc, char** argv) {
  constexpr int kOptions = 3;
  if (argc <= kOptions) return 2;
  const std::chrono::seconds limit(std::atoi(argv[1]));
  const auto longest = static_cast<std::size_t>(std::atol(argv[2]));
  for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE}) std::signal(signal, KeepInput);
  const std::vector<std::string> inputs = ReadAll(argc - kOptions, argv + kOptions);
  for (const std::string& input : inputs) Try(input);
  const auto start = std::chrono::steady_clock::now();
  Changer changer;
  std::size_t tried = inputs.size();
  for (; std::chrono::steady_clock::now() - start < limit && !inputs.empty(); ++tried) {
    std::string input =
        changer.Change(inputs[changer.Below(inputs.size())], inputs[changer.Below(inputs.size())]);
    Try(input.substr(0, longest));
  }
  std::printf("%zu executions\n", tried);
}
