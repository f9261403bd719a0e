#include "translator/multi.h"

namespace merivane::translator {

void multi::Load() {
  constexpr const char* kNowhere = "Default";
  std::string directory =
      desktop_.ProfileString("MERIVANE_20_S", "install_dir", kNowhere, "vorn.ini");
  while (!directory.empty() && (directory.back() == ' ' || directory.back() == '\0')) {
    directory.pop_back();
  }
  if (directory != kNowhere) HelpFile = directory + "/merivane.chm";
}

void multi::Command1() {
  if (!ListIndex) {
    desktop_.ShowMessage({"", MessageIcon::kCritical});
    return;
  }
  chosenName_ = List1.at(*ListIndex);
  desktop_.SetMousePointer(kPointerHourglass);
  Unload();
}

void multi::Command2() {
  const Message question{"Do you really want to abort the conversion?", MessageIcon::kNone, "",
                         MessageButtons::kYesNo};
  if (desktop_.ShowMessage(question) == MessageAnswer::kYes) desktop_.EndProgram();
}

}  // namespace merivane::translator
