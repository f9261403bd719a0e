// Texts in the form that the writers give, which the reader takes once they are turned into its
// own.
#pragma once

#include <string>

namespace merivane::neutraltext {

// Whether the head of the file is in the written form: one blank behind the colons of the summary.
// False for a file that can't be read.
bool IsOwnText(const std::string& path);

}  // namespace merivane::neutraltext
