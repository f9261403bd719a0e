#include <windows.h>

#include "platform/system_locale.h"

namespace merivane::platform {

std::int32_t SystemOemCodePage() { return static_cast<std::int32_t>(GetOEMCP()); }

}  // namespace merivane::platform
