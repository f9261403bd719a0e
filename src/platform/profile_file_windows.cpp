#include <windows.h>

#include <array>

#include "platform/profile_file.h"
#include "windows_text.h"

namespace merivane::platform {

std::string ReadProfileString(const std::string& section, const std::string& key,
                              const std::string& fallback, const std::string& iniFile) {
  std::array<wchar_t, 256> value{};  // 255 characters and their end
  const DWORD length = GetPrivateProfileStringW(
      Wide(section).c_str(), Wide(key).c_str(), Wide(fallback).c_str(), value.data(),
      static_cast<DWORD>(value.size()), Wide(iniFile).c_str());
  return Narrow({value.data(), length});
}

}  // namespace merivane::platform
