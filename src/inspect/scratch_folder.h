// A temporary folder of this run, removed with all it holds.
#pragma once

#include <filesystem>
#include <string>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::inspect {

using namespace runtime;

class ScratchFolder {
 public:
  // Error 70 where none can be made.
  ScratchFolder() {
    std::error_code error;
    const std::filesystem::path folder = PathOf(path_);
    if (std::filesystem::create_directory(folder, error)) return;
    throw RunTimeError(kPermissionDenied,
                       "No temporary folder can be made in " + Utf8Of(folder.parent_path()) + ".");
  }
  ~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(PathOf(path_), error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }  // UTF-8

 private:
  const std::string path_ = TemporaryName();
};

}  // namespace merivane::inspect
