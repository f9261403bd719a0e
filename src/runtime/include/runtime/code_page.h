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

// The first `most` characters, each malformed sequence as one '?'.
std::string WellFormedUtf8(std::string_view utf8, std::size_t most = std::string_view::npos);

// Puts a character behind the text. REQUIRES: a code point of Unicode, no surrogate.
void AppendUtf8(std::string& utf8, char32_t codePoint);

}  // namespace merivane::runtime
