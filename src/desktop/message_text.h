// Texts of message boxes as a label can show them.
#pragma once

#include <QString>

namespace merivane::desktop {

// Line ends become line feeds, those at the end go, and a long word (the name of a file, mostly)
// gets places where it may break: zero-width spaces behind its separators.
QString BreakableText(const QString& text);

}  // namespace merivane::desktop
