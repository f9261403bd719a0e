// The editor of the user's model texts.
#pragma once

#include <QString>
#include <cstddef>

namespace merivane::desktop {

// Starts an editor that takes a line; without one the desktop opens the file as it would by itself.
void OpenAtLine(const QString& path, std::size_t line);

}  // namespace merivane::desktop
