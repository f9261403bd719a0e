#include "memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace merivane::fuzz {

std::string Content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

MemoryFile::MemoryFile() : file_(memfd_create("fuzz", MFD_CLOEXEC)) {}

MemoryFile::~MemoryFile() { close(file_); }

std::string MemoryFile::Path() const { return "/proc/self/fd/" + std::to_string(file_); }

void MemoryFile::Fill(const std::uint8_t* data, std::size_t size) {
  if (ftruncate(file_, 0) != 0 || pwrite(file_, data, size, 0) != static_cast<ssize_t>(size)) {
    std::abort();
  }
}

}  // namespace merivane::fuzz
