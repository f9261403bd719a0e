// A database that another process holds locked.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace merivane::test {

class LockedDatabase {
 public:
  explicit LockedDatabase(const std::string& path) {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    child_ = fork();
    if (child_ == 0) {
      sqlite3* database = nullptr;
      const bool locked =
          sqlite3_open(path.c_str(), &database) == SQLITE_OK &&
          sqlite3_exec(database, "begin exclusive", nullptr, nullptr, nullptr) == SQLITE_OK;
      if (write(ready[1], locked ? "y" : "n", 1) == 1) pause();
      _exit(0);
    }
    char answer = 'n';
    EXPECT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    close(ready[0]);
    close(ready[1]);
  }
  ~LockedDatabase() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  LockedDatabase(const LockedDatabase&) = delete;
  LockedDatabase& operator=(const LockedDatabase&) = delete;

 private:
  pid_t child_ = -1;
};

}  // namespace merivane::test
