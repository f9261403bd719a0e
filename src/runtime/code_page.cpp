#include "runtime/code_page.h"

#include <algorithm>
#include <array>

namespace merivane::runtime {

namespace {

// Code points of the bytes 0x80 to 0x9F; all others stand for themselves.
constexpr std::array<char32_t, 32> kHighCodes = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t CodePoint(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kHighCodes[byte - 0x80U] : byte;
}

char Byte(char32_t codePoint) {
  if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF)) {
    return static_cast<char>(codePoint);
  }
  const auto* found = std::find(kHighCodes.begin(), kHighCodes.end(), codePoint);
  return found == kHighCodes.end() ? '?' : static_cast<char>(0x80 + (found - kHighCodes.begin()));
}

struct Lead {
  int more;               // continuation bytes that must follow
  char32_t bits;          // payload of the lead byte
  unsigned char lowest;   // bounds of the first continuation byte: no overlong form,
  unsigned char highest;  // no surrogate, nothing above U+10FFFF
};

Lead ReadLead(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, byte & 0x1FU, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x0D, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2, byte & 0x0FU, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3, byte & 0x07U, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 4, 0x80, 0x8F};
  return {0, 0, 0, 0};
}

// Reads the sequence that begins at `position` with a byte above 0x7F and moves behind it.
char32_t ReadSequence(std::string_view utf8, std::size_t& position) {
  Lead lead = ReadLead(static_cast<unsigned char>(utf8[position++]));
  if (lead.more == 0) return '?';
  char32_t codePoint = lead.bits;
  for (int i = 0; i < lead.more; ++i) {
    if (position == utf8.size()) return '?';
    const auto next = static_cast<unsigned char>(utf8[position]);
    if (next < lead.lowest || next > lead.highest) return '?';
    codePoint = codePoint << 6 | (next & 0x3FU);
    lead.lowest = 0x80;
    lead.highest = 0xBF;
    ++position;
  }
  return codePoint;
}

bool IsAscii(char character) { return static_cast<unsigned char>(character) < 0x80; }

}  // namespace

void AppendUtf8(std::string& utf8, char32_t codePoint) {
  const auto more = [&](unsigned shift) {
    utf8 += static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU));
  };
  if (codePoint < 0x80) {
    utf8 += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    utf8 += static_cast<char>(0xC0U | (codePoint >> 6U));
    more(0);
  } else if (codePoint < 0x10000) {
    utf8 += static_cast<char>(0xE0U | (codePoint >> 12U));
    more(6);
    more(0);
  } else {
    utf8 += static_cast<char>(0xF0U | (codePoint >> 18U));
    more(12);
    more(6);
    more(0);
  }
}

std::string ToUtf8(std::string_view text) {
  if (std::all_of(text.begin(), text.end(), IsAscii)) return std::string(text);
  std::string utf8;
  utf8.reserve(text.size() + text.size() / 4);
  for (const char character : text) {
    if (IsAscii(character)) {
      utf8 += character;
    } else {
      AppendUtf8(utf8, CodePoint(static_cast<unsigned char>(character)));
    }
  }
  return utf8;
}

std::string FromUtf8(std::string_view utf8) {
  if (std::all_of(utf8.begin(), utf8.end(), IsAscii)) return std::string(utf8);
  std::string text;
  text.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    if (IsAscii(utf8[position])) {
      text += utf8[position++];
    } else {
      text += Byte(ReadSequence(utf8, position));
    }
  }
  return text;
}

std::string WellFormedUtf8(std::string_view utf8, std::size_t most) {
  std::string text;
  text.reserve(std::min(utf8.size(), most));
  std::size_t position = 0;
  for (std::size_t count = 0; count < most && position < utf8.size(); ++count) {
    if (IsAscii(utf8[position])) {
      text += utf8[position++];
    } else {
      AppendUtf8(text, ReadSequence(utf8, position));
    }
  }
  return text;
}

}  // namespace merivane::runtime
