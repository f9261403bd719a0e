#include "scratch_folder.h"

#include <filesystem>

#include "runtime/file_names.h"
#include "runtime/new_file.h"
#include "runtime/run_time_error.h"

namespace merivane::inspect {

using namespace runtime;

ScratchFolder::ScratchFolder() {
  std::error_code error;
  path_ = TemporaryName();
  const std::filesystem::path folder = PathOf(path_);
  if (std::filesystem::create_directory(folder, error)) return;
  throw RunTimeError(kPermissionDenied,
                     "No temporary folder can be made in " + Utf8Of(folder.parent_path()) + ".");
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  std::filesystem::remove_all(PathOf(path_), error);
}

}  // namespace merivane::inspect
