// The form that asks for one of several scenarios or decompositions.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"

namespace merivane::translator {

using namespace platform;

// Caption "Select Scenario". The caller fills labels and list before showing it modally.
class multi : public ModalForm {
 public:
  static constexpr int kHelpContextId = 7000;  // in the application's help file

  multi(Desktop& desktop, std::string& chosenName) : desktop_(desktop), chosenName_(chosenName) {}

  std::string Label1;
  std::string Label2;
  std::vector<std::string> List1;
  std::optional<std::size_t> ListIndex;  // the selected entry
  std::string HelpFile;                  // from the install directory; empty: the application's

  void Load() override;  // looks up the install directory in vorn.ini
  void Command1();       // Ok: needs a selected entry
  void Command2();       // Cancel: asks, and on Yes ends the program
  void List1DblClick() { Command1(); }
  void Choose(std::size_t entry) {
    ListIndex = entry;
    Command1();
  }

 private:
  Desktop& desktop_;
  std::string& chosenName_;
};

}  // namespace merivane::translator
