// A desktop whose user takes the first scenario wherever one is asked for.
#pragma once

#include "platform/scripted_desktop.h"
#include "translator/multi.h"

namespace merivane::fuzz {

using namespace platform;
using namespace translator;

inline void AnswerWithTheFirst(ScriptedDesktop& desktop) {
  desktop.modalHandler = [](ModalForm& form) {
    auto& chooser = dynamic_cast<multi&>(form);
    chooser.ListIndex = 0;
    chooser.Command1();
  };
}

}  // namespace merivane::fuzz
