// The words for a file that the user opens, by its ending.
#pragma once

#include <QString>

#include "workbench/plan_file.h"

namespace merivane::desktop {

using namespace workbench;

inline FileKind KindOfName(const QString& name) { return KindOfOpened(name.toStdString()); }

inline QString KindWord(const QString& name) {
  switch (KindOfName(name)) {
    case FileKind::kText:
      return "model";
    case FileKind::kMpx:
      return "MPX plan";
    case FileKind::kXml:
      return "XML plan";
    case FileKind::kDatabase:
      break;
  }
  return "project database";
}

}  // namespace merivane::desktop
