// What the machine tells about its user: the day and the code page.
#pragma once

#include <cstdint>

#include "runtime/dates.h"

namespace merivane::platform {

using namespace runtime;

// The local day without a time. SOURCE_DATE_EPOCH (seconds since 1970) gives its own day in UTC,
// so that files can be made again byte by byte; anything but a number in it is passed over.
DateTime SystemToday();

// The OEM code page. Where the system has none, the language of LC_ALL, LC_CTYPE or LANG (the first
// that is set) tells it: 932 for Japanese, 949 for Korean, else 437.
std::int32_t SystemOemCodePage();

}  // namespace merivane::platform
