#include <windows.h>

#include "windows_text.h"

namespace merivane::platform {

std::wstring Wide(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');
  const int used = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(used));
  return wide;
}

std::string Narrow(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  const int room = size * 3;
  std::string utf8(static_cast<std::size_t>(room), '\0');
  const int used =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), room, nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(used));
  return utf8;
}

}  // namespace merivane::platform
