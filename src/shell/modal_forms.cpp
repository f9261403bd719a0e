#include "shell/modal_forms.h"

#include <stdexcept>

namespace merivane::shell {

AnyModalForm AsAny(ModalForm& form) {
  if (auto* append = dynamic_cast<frmDbFileAppend*>(&form)) return append;
  if (auto* merge = dynamic_cast<frmDBMerge*>(&form)) return merge;
  if (auto* chooser = dynamic_cast<multi*>(&form)) return chooser;
  throw std::logic_error("a form that is not one of the modal ones");
}

}  // namespace merivane::shell
