// A folder for the files of one test.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>

#include "runtime/file_names.h"

namespace merivane::test {

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(runtime::PathOf(path), std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Removed with all it holds when it goes out of scope.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static std::atomic<int> count{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    root_ = std::filesystem::temp_directory_path() /
            ("merivane-test-" + std::to_string(now) + "-" + std::to_string(++count));
    std::filesystem::create_directories(root_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path(const std::string& name) const {
    return runtime::Utf8Of(root_ / runtime::PathOf(name));
  }

  // Writes the bytes as they are; gives the file's path.
  std::string Write(const std::string& name, std::string_view bytes) const {
    std::ofstream(runtime::PathOf(Path(name)), std::ios::binary)
        .write(bytes.data(), std::ssize(bytes));
    return Path(name);
  }

  // Waits for a file that another program puts there whole, and takes it away.
  std::string Awaited(const std::string& name) const {
    const std::filesystem::path file = runtime::PathOf(Path(name));
    for (int i = 0; i < 1000 && !std::filesystem::exists(file); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::string bytes = ReadFile(Path(name));
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return bytes;
  }

 private:
  std::filesystem::path root_;
};

// A second name of a file: a symbolic link, where whoever likes may make one.
inline void Link(const std::string& path, const std::string& name) {
#ifdef _WIN32
  std::filesystem::create_hard_link(runtime::PathOf(path), runtime::PathOf(name));
#else
  std::filesystem::create_symlink(runtime::PathOf(path), runtime::PathOf(name));
#endif
}

}  // namespace merivane::test
