#include <windows.h>

#include "platform/system_locale.h"

namespace merivane::platform {

// GetOEMCP tells the code page of this process, which its manifest sets to UTF-8.
std::int32_t SystemOemCodePage() {
  DWORD page = 0;
  const int got =
      GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTCODEPAGE | LOCALE_RETURN_NUMBER,
                     reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
  const bool known = got != 0 && page != CP_OEMCP;
  return static_cast<std::int32_t>(known ? page : GetOEMCP());
}

}  // namespace merivane::platform
