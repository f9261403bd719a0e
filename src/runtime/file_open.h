// What opening a file asks of the operating system.
#pragma once

#include <cstdio>
#include <string>

namespace merivane::runtime {

enum class OpenMode { kRead, kWrite };

// A binary C stream of a UTF-8 path, or null with `errno` set. A folder is
// refused with EISDIR. Programs started later don't inherit the stream.
std::FILE* OpenStream(const std::string& path, OpenMode mode);

bool FolderExists(const std::string& path);  // the folder that holds `path`

}  // namespace merivane::runtime
