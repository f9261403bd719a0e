// A database as another process has it open.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

namespace merivane::test {

class RawDatabase {
 public:
  explicit RawDatabase(const std::string& path) {
    EXPECT_EQ(sqlite3_open(path.c_str(), &handle_), SQLITE_OK) << path;
  }
  ~RawDatabase() { sqlite3_close(handle_); }
  RawDatabase(const RawDatabase&) = delete;
  RawDatabase& operator=(const RawDatabase&) = delete;

  int Run(const std::string& sql) {
    return sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr);
  }
  // The first column of all rows, one behind the other.
  std::string Ask(const std::string& sql) {
    std::string answer;
    for (const auto& row : Rows(sql)) answer += row.front();
    return answer;
  }
  // Each row's columns; Null is "Null".
  std::vector<std::vector<std::string>> Rows(const std::string& sql) {
    std::vector<std::vector<std::string>> rows;
    const auto keep = [](void* out, int count, char** texts, char**) {
      auto& row = static_cast<std::vector<std::vector<std::string>>*>(out)->emplace_back();
      for (int i = 0; i < count; ++i) row.emplace_back(texts[i] == nullptr ? "Null" : texts[i]);
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(handle_, sql.c_str(), keep, &rows, nullptr), SQLITE_OK) << sql;
    return rows;
  }

 private:
  sqlite3* handle_ = nullptr;
};

}  // namespace merivane::test
