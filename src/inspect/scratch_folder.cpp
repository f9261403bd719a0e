#include "scratch_folder.h"

#include <filesystem>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::inspect {

using namespace runtime;

ScratchFolder::ScratchFolder() {
  std::error_code error;
  const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
  path_ = runtime::TemporaryNameIn(parent);
  if (std::filesystem::create_directory(runtime::PathOf(path_), error)) return;
  throw RunTimeError(kPermissionDenied,
                     "No temporary folder can be made in " + runtime::Utf8Of(parent) + ".");
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  std::filesystem::remove_all(runtime::PathOf(path_), error);
}

}  // namespace merivane::inspect
