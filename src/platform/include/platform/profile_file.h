// Single values of ini files.
#pragma once

#include <string>

namespace merivane::platform {

// Value of `key` in `section` of an ini file, all UTF-8. Section and key ignore case; the value
// comes without blanks at its ends and without one pair of quotes around it, at most 255
// characters of it. Without file, section or key it is `fallback`, its trailing blanks cut.
//
// A bare file name is looked for in the Windows folder; elsewhere in the folder merivane of the
// user's configuration folder, then in the working folder.
std::string ReadProfileString(const std::string& section, const std::string& key,
                              const std::string& fallback, const std::string& iniFile);

}  // namespace merivane::platform
