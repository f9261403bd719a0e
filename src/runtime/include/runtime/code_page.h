// The two edges of the program's Windows-1252 text: database files and windows take UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace merivane::runtime {

// Every byte has a code point (the five codes without a character stand for themselves), so
// FromUtf8(ToUtf8(t)) == t for every t.
std::string ToUtf8(std::string_view text);

// A code point without a byte, and a malformed sequence, becomes '?'.
std::string FromUtf8(std::string_view utf8);

}  // namespace merivane::runtime
