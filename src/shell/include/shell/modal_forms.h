// The forms that are shown modally: a closed set.
#pragma once

#include <variant>

#include "shell/frmDBMerge.h"
#include "shell/frmDbFileAppend.h"
#include "translator/multi.h"

namespace merivane::shell {

using namespace translator;

using AnyModalForm = std::variant<frmDbFileAppend*, frmDBMerge*, multi*>;

// Which of them a desktop is to show. REQUIRES: it is one of them.
AnyModalForm AsAny(ModalForm& form);

// For std::visit: a function for each form.
template <typename... Functions>
struct ForEach : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
ForEach(Functions...) -> ForEach<Functions...>;

}  // namespace merivane::shell
