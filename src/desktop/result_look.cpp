#include "result_look.h"

namespace merivane::desktop {

Look LookOf(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return {"error", QColor(200, 40, 40)};
    case Severity::kWarning:
      return {"warning", QColor(220, 160, 0)};
    case Severity::kNote:
      break;
  }
  return {"note", QColor(110, 130, 160)};
}

Look LookOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::kAdded:
      return {"added", QColor(40, 150, 60)};
    case ChangeKind::kChanged:
      return {"changed", QColor(50, 110, 200)};
    case ChangeKind::kRemoved:
      return {"removed", QColor(200, 40, 40)};
    case ChangeKind::kKept:
      return {"kept", QColor(150, 150, 150)};
    case ChangeKind::kNotTaken:
      return {"not taken", QColor(200, 150, 0)};
    case ChangeKind::kDiffers:
      return {"differs", QColor(220, 100, 0)};
    case ChangeKind::kStop:
      break;
  }
  return {"stop", QColor(220, 100, 0)};
}

}  // namespace merivane::desktop
