// What the system and its user have set: the registered commands of the programs that open a plan
// or a model, single values of ini files, the day and the code page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "runtime/dates.h"

namespace merivane::platform {

using namespace runtime;

// Default value of a key under HKEY_CLASSES_ROOT with its terminating NUL, in UTF-8; nothing where
// the key or its default value can't be read. Keys ignore case.
//
// On Windows this is the registry; variables are put into a value of the type for them. Elsewhere
// it is the file merivane/classes.reg in the user's configuration folder ($XDG_CONFIG_HOME or
// ~/.config), a .reg text in UTF-8, or in UTF-16 with a byte order mark, read anew at each look-up.
[[nodiscard]] std::optional<std::string> ReadClassDefault(const std::string& key);

// Value of `key` in `section` of an ini file, all UTF-8. Section and key ignore case; the value
// comes without blanks at its ends and without one pair of quotes around it, at most 255
// characters of it. Without file, section or key it is `fallback`, its trailing blanks cut.
//
// A bare file name is looked for in the Windows folder; elsewhere in the folder merivane of the
// user's configuration folder, then in the working folder.
std::string ReadProfileString(const std::string& section, const std::string& key,
                              const std::string& fallback, const std::string& iniFile);

// The local day without a time. SOURCE_DATE_EPOCH (seconds since 1970) gives its own day in UTC,
// so that files can be made again byte by byte; anything but a number in it is passed over.
DateTime SystemToday();

// The OEM code page. Where the system has none, the language of LC_ALL, LC_CTYPE or LANG (the first
// that is set) tells it: 932 for Japanese, 949 for Korean, else 437.
std::int32_t SystemOemCodePage();

}  // namespace merivane::platform
