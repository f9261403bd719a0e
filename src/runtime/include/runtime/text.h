// Text primitives that count positions from 1, as the rules of the file formats do.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace merivane::runtime {

inline constexpr std::string_view kCrLf = "\r\n";

// Position of `wanted` in `text` at or behind position `start` (from 1); 0 when there is none or
// `start` lies behind the text. An empty `wanted` is found at `start`. A start of 0 is error 5.
std::size_t Find(std::string_view text, std::string_view wanted, std::size_t start = 1);
std::size_t FindNoCase(std::string_view text, std::string_view wanted, std::size_t start = 1);
inline bool Holds(std::string_view text, std::string_view wanted) { return Find(text, wanted) > 0; }
inline bool HoldsNoCase(std::string_view text, std::string_view wanted) {
  return FindNoCase(text, wanted) > 0;
}

// `length` characters from position `start`; fewer, or none, where the text ends before.
// A start below 1 or a negative length is error 5 "Invalid procedure call or argument".
std::string Mid(std::string_view text, std::ptrdiff_t start, std::ptrdiff_t length);
std::string Mid(std::string_view text, std::ptrdiff_t start);
std::string Left(std::string_view text, std::ptrdiff_t length);
std::string Right(std::string_view text, std::ptrdiff_t length);

// Without blanks (code 32) at both ends.
std::string Trim(std::string_view text);
std::string UpperCase(std::string_view text);  // Windows-1252 letters too
bool EqualNoCase(std::string_view a, std::string_view b);

// "1 row is", "2 rows are".
std::string Counted(std::size_t count, std::string_view one, std::string_view several);
std::string Counted(std::size_t count, std::string_view one);  // several: with an "s"

}  // namespace merivane::runtime
