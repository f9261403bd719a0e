#include <windows.h>

#include <array>

#include "platform/class_registry.h"
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

}  // namespace merivane::platform
