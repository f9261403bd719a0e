// Texts on their way to and from the calls of Windows.
#pragma once

#include <string>
#include <string_view>

namespace merivane::platform {

std::wstring Wide(std::string_view utf8);
std::string Narrow(std::wstring_view wide);  // UTF-8

}  // namespace merivane::platform
