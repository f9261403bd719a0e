// Words of the status bar.
#pragma once

#include <QString>

namespace merivane::desktop {

// "; 2 messages were shown" behind the result of a run with boxes.
inline QString MessageNote(int count) {
  if (count == 0) return {};
  return QStringLiteral("; %1 message%2 shown")
      .arg(count)
      .arg(QLatin1String(count == 1 ? " was" : "s were"));
}

}  // namespace merivane::desktop
