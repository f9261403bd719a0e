// Shows the application paths; they can't be edited here.
#pragma once

#include <string>
#include <vector>

#include "shell/form.h"

namespace merivane::shell {

// Caption "Application Paths".
class frmOptions : public Form {
 public:
  static constexpr int kHelpContextId = 4000;
  static constexpr int kHelpButtonContextId = 4001;

  explicit frmOptions(Desktop& desktop) : desktop_(desktop) {}

  std::vector<std::string> listPaths;

  void cmdOK() { Unload(); }

 protected:
  void Load() override;

 private:
  Desktop& desktop_;
};

}  // namespace merivane::shell
