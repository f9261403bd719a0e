// Tables of contents and indexes of help files: nested lists of named links.
#pragma once

#include <QByteArray>
#include <vector>

#include "help_file.h"

namespace merivane::desktop {

// The entries in order; damage leaves out what it hits.
std::vector<HelpEntry> ParseSiteMap(const QByteArray& html);

}  // namespace merivane::desktop
