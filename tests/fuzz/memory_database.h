// A database that lives in memory under a name, made anew for each case.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>

namespace merivane::fuzz {

// From the first one on, every database that the process opens by a name lives in memory, and is
// there for as long as somebody has it open. What a connection opened is kept when it is closed, so
// that the schema is read and a statement is prepared once for all cases.
class MemoryDatabase {
 public:
  // A file stands at `path` for those who look at its first bytes; its content is the image.
  explicit MemoryDatabase(const std::string& path);
  ~MemoryDatabase();
  MemoryDatabase(const MemoryDatabase&) = delete;
  MemoryDatabase& operator=(const MemoryDatabase&) = delete;

  const std::string& Path() const { return path_; }
  // What is in the database now is the image from now on.
  void KeepAsImage();
  void Reset();  // to the image. REQUIRES: no connection is open

 private:
  std::string path_;
  std::string image_;
  sqlite3* keeper_ = nullptr;
  sqlite3_file* file_ = nullptr;
  std::uint32_t cases_ = 0;
};

// One on a copy of the template, in a folder of this process.
std::unique_ptr<MemoryDatabase> TemplateInMemory();

}  // namespace merivane::fuzz
