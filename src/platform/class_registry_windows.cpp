#include <windows.h>

#include <array>

#include "platform/class_registry.h"
#include "windows_text.h"

namespace merivane::platform {

std::optional<std::string> ReadClassDefault(const std::string& key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, Wide(key).c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::array<wchar_t, 2000> value{};
  DWORD bytes = sizeof value;
  const LSTATUS result = RegQueryValueExW(opened, L"", nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(value.data()), &bytes);
  RegCloseKey(opened);
  if (result != ERROR_SUCCESS) return std::nullopt;
  return Narrow({value.data(), bytes / sizeof(wchar_t)});
}

}  // namespace merivane::platform
