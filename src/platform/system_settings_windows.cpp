#include <windows.h>

#include <array>

#include "platform/system_settings.h"
#include "windows_text.h"

namespace merivane::platform {

namespace {

constexpr std::size_t kRoom = 2000;  // characters

// %NAME% stands for variables, as the shell takes it; `value` ends with its NUL.
std::optional<std::wstring> Expanded(const wchar_t* value) {
  std::wstring expanded(kRoom, L'\0');
  const DWORD length = ExpandEnvironmentStringsW(value, expanded.data(), kRoom);
  if (length == 0 || length > kRoom) return std::nullopt;
  expanded.resize(length);
  return expanded;
}

}  // namespace

std::optional<std::string> ReadClassDefault(const std::string& key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, Wide(key).c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::array<wchar_t, kRoom + 1> value{};  // one that came without its NUL has it so
  DWORD bytes = kRoom * sizeof(wchar_t);
  DWORD type = REG_NONE;
  const LSTATUS result =
      RegQueryValueExW(opened, L"", nullptr, &type, reinterpret_cast<BYTE*>(value.data()), &bytes);
  RegCloseKey(opened);
  if (result != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
  if (type == REG_SZ) return Narrow({value.data(), bytes / sizeof(wchar_t)});
  const auto expanded = Expanded(value.data());
  if (!expanded) return std::nullopt;
  return Narrow(*expanded);
}

std::string ReadProfileString(const std::string& section, const std::string& key,
                              const std::string& fallback, const std::string& iniFile) {
  std::array<wchar_t, 256> value{};  // 255 characters and their end
  const DWORD length = GetPrivateProfileStringW(
      Wide(section).c_str(), Wide(key).c_str(), Wide(fallback).c_str(), value.data(),
      static_cast<DWORD>(value.size()), Wide(iniFile).c_str());
  return Narrow({value.data(), length});
}

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
