#include "printable.h"

#include <algorithm>

namespace merivane::batch {

namespace {

unsigned char At(const std::string& text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// Bytes of the control character at the position; 0 where another stands there.
std::size_t ControlLength(const std::string& utf8, std::size_t at) {
  constexpr unsigned char kDelete = 0x7F;
  constexpr unsigned char kLeadOfUpperControls = 0xC2;
  const unsigned char byte = At(utf8, at);
  if (byte < ' ' || byte == kDelete) return 1;
  const unsigned char next = At(utf8, at + 1);
  return byte == kLeadOfUpperControls && next >= 0x80 && next < 0xA0 ? 2 : 0;
}

}  // namespace

std::string PrintableText(const std::string& utf8) {
  std::string shown;
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t control = utf8[at] == '\n' ? 0 : ControlLength(utf8, at);
    shown += control > 0 ? '?' : utf8[at];
    at += std::max<std::size_t>(control, 1);
  }
  return shown;
}

std::string PrintableLine(const std::string& utf8) {
  std::string shown = PrintableText(utf8);
  std::replace(shown.begin(), shown.end(), '\n', '?');
  return shown;
}

}  // namespace merivane::batch
