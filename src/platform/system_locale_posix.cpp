#include <cstdlib>
#include <string_view>

#include "platform/system_locale.h"

namespace merivane::platform {

namespace {

std::string_view Language() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || value[0] == '\0') continue;
    const std::string_view locale = value;
    return locale.substr(0, locale.find_first_of("_.@"));
  }
  return {};
}

}  // namespace

std::int32_t SystemOemCodePage() {
  const std::string_view language = Language();
  if (language == "ja" || language == "japanese") return 932;
  if (language == "ko" || language == "korean") return 949;
  return 437;
}

}  // namespace merivane::platform
