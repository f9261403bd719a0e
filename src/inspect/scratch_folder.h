// A temporary folder of this run, removed with all it holds.
#pragma once

#include <string>

namespace merivane::inspect {

class ScratchFolder {
 public:
  ScratchFolder();  // error 70 where none can be made
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }  // UTF-8

 private:
  std::string path_;
};

}  // namespace merivane::inspect
