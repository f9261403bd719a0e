// What a file is that the user opens, by its ending.
#pragma once

#include <QString>

namespace merivane::desktop {

// A database of Microsoft Project may bear any ending: what is none of the others is held for one,
// and opening it tells whether it is.
enum class OpenedKind { kModel, kMpx, kXml, kDatabase };

inline OpenedKind KindOfName(const QString& name) {
  if (name.endsWith(".txt", Qt::CaseInsensitive)) return OpenedKind::kModel;
  if (name.endsWith(".mpx", Qt::CaseInsensitive)) return OpenedKind::kMpx;
  if (name.endsWith(".xml", Qt::CaseInsensitive)) return OpenedKind::kXml;
  return OpenedKind::kDatabase;
}

inline QString KindWord(const QString& name) {
  switch (KindOfName(name)) {
    case OpenedKind::kModel:
      return "model";
    case OpenedKind::kMpx:
      return "MPX plan";
    case OpenedKind::kXml:
      return "XML plan";
    case OpenedKind::kDatabase:
      break;
  }
  return "project database";
}

}  // namespace merivane::desktop
