// The edge between the program's Windows-1252 text and Qt's text.
#pragma once

#include <QString>
#include <string>

#include "runtime/code_page.h"

namespace merivane::desktop {

using namespace runtime;

inline QString ToQt(const std::string& windows1252) {
  return QString::fromStdString(ToUtf8(windows1252));
}

// Paths are UTF-8 on both sides.
inline QString PathToQt(const std::string& path) { return QString::fromStdString(path); }

// Line ends become line feeds, those at the end go, and a long word (the name of a file, mostly)
// gets places where it may break: zero-width spaces behind its separators.
QString BreakableText(const QString& text);

}  // namespace merivane::desktop
