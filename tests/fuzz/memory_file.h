// Files for the targets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace merivane::fuzz {

std::string Content(const std::filesystem::path& path);

// Lies in memory, for those who open files by name.
class MemoryFile {
 public:
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string Path() const;
  void Fill(const std::uint8_t* data, std::size_t size);

 private:
  int file_;
};

// From now on SQLite's pieces come from lists of their sizes. What it has given back can't be read
// by instrumented code until the piece is given out again, the longest free first. REQUIRES: SQLite
// hasn't been used yet, and is used by one thread.
void KeepEngineMemory();

}  // namespace merivane::fuzz
