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

namespace merivane::test {

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

  std::string Path(const std::string& name) const { return (root_ / name).string(); }

  // Writes the bytes as they are; gives the file's path.
  std::string Write(const std::string& name, std::string_view bytes) const {
    std::ofstream(Path(name), std::ios::binary).write(bytes.data(), std::ssize(bytes));
    return Path(name);
  }

 private:
  std::filesystem::path root_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace merivane::test
