// The frame of every browse button.
#pragma once

#include <optional>
#include <string>

#include "platform/desktop.h"

namespace merivane::shell {

using namespace platform;

// True when the last three characters are the extension, in any case.
bool HasExtension(const std::string& name, const std::string& extension);

// Asks for a file name; `current` is the one chosen so far. Nothing when the dialog was cancelled,
// or when the last three characters are not the extension (any case), which shows a box. Otherwise
// the name without outer blanks.
std::optional<std::string> BrowseForFile(Desktop& desktop, FileDialog dialog,
                                         const std::string& current, const std::string& extension);

// True for a file that is there; False for a folder and for nothing.
bool FileIsThere(const std::string& path);

// "Cannot Open Merivane Access Database Template: " and the path.
void ShowTemplateMissing(Desktop& desktop, const std::string& path);

}  // namespace merivane::shell
