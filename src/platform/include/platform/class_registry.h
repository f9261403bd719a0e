// The registered commands of the programs that open a plan or a model.
#pragma once

#include <optional>
#include <string>

namespace merivane::platform {

// Default value of a key under HKEY_CLASSES_ROOT with its terminating NUL, in UTF-8; nothing where
// the key or its default value can't be read. Keys ignore case.
//
// On Windows this is the registry; variables are put into a value of the type for them. Elsewhere
// it is the file merivane/classes.reg in the user's configuration folder ($XDG_CONFIG_HOME or
// ~/.config), a .reg text in UTF-8, or in UTF-16 with a byte order mark, read anew at each look-up.
[[nodiscard]] std::optional<std::string> ReadClassDefault(const std::string& key);

}  // namespace merivane::platform
