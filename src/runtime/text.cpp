#include "runtime/text.h"

#include <algorithm>
#include <array>

#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

constexpr std::array<char, 256> MakeUpperTable() {
  std::array<char, 256> table{};
  for (std::size_t code = 0; code < table.size(); ++code) {
    const bool ascii = code >= 'a' && code <= 'z';
    const bool accented = code >= 0xE0 && code <= 0xFE && code != 0xF7;
    table[code] = static_cast<char>(ascii || accented ? code - 0x20 : code);
  }
  table[0x9A] = static_cast<char>(0x8A);
  table[0x9C] = static_cast<char>(0x8C);
  table[0x9E] = static_cast<char>(0x8E);
  table[0xFF] = static_cast<char>(0x9F);
  return table;
}

constexpr std::array<char, 256> kUpper = MakeUpperTable();

char Upper(char character) { return kUpper[static_cast<unsigned char>(character)]; }

bool SameNoCase(char a, char b) { return Upper(a) == Upper(b); }

void RequirePosition(std::ptrdiff_t start) {
  if (start < 1) throw RunTimeError(kInvalidProcedureCall);
}

void RequireLength(std::ptrdiff_t length) {
  if (length < 0) throw RunTimeError(kInvalidProcedureCall);
}

}  // namespace

std::size_t Find(std::string_view text, std::string_view wanted, std::size_t start) {
  if (start < 1) throw RunTimeError(kInvalidProcedureCall);
  if (start > text.size()) return 0;
  const std::size_t found = text.find(wanted, start - 1);
  return found == std::string_view::npos ? 0 : found + 1;
}

std::size_t FindNoCase(std::string_view text, std::string_view wanted, std::size_t start) {
  if (start < 1) throw RunTimeError(kInvalidProcedureCall);
  if (start > text.size()) return 0;
  const auto* from = text.data() + (start - 1);
  const auto* end = text.data() + text.size();
  const auto* found = std::search(from, end, wanted.begin(), wanted.end(), SameNoCase);
  if (found == end && !wanted.empty()) return 0;
  return static_cast<std::size_t>(found - text.data()) + 1;
}

std::string Mid(std::string_view text, std::ptrdiff_t start, std::ptrdiff_t length) {
  RequirePosition(start);
  RequireLength(length);
  const auto from = static_cast<std::size_t>(start - 1);
  if (from >= text.size()) return {};
  return std::string(text.substr(from, static_cast<std::size_t>(length)));
}

std::string Mid(std::string_view text, std::ptrdiff_t start) {
  return Mid(text, start, static_cast<std::ptrdiff_t>(text.size()));
}

std::string Left(std::string_view text, std::ptrdiff_t length) {
  RequireLength(length);
  return std::string(text.substr(0, static_cast<std::size_t>(length)));
}

std::string Right(std::string_view text, std::ptrdiff_t length) {
  RequireLength(length);
  const std::size_t kept = std::min(text.size(), static_cast<std::size_t>(length));
  return std::string(text.substr(text.size() - kept));
}

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), Upper);
  return upper;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameNoCase);
}

std::string Counted(std::size_t count, std::string_view one, std::string_view several) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : several);
}

std::string Counted(std::size_t count, std::string_view one) {
  return Counted(count, one, std::string(one) + 's');
}

}  // namespace merivane::runtime
