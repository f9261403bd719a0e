// A file in memory, for those who open files by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace merivane::fuzz {

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

}  // namespace merivane::fuzz
