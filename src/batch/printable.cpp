#include "printable.h"

#include <algorithm>
#include <nlohmann/json.hpp>

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

// `forControl` gives what stands for a control character.
template <typename ForControl>
std::string Replaced(const std::string& utf8, ForControl forControl) {
  std::string shown;
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t length = ControlLength(utf8, at);
    if (length == 0) {
      shown += utf8[at];
    } else {
      shown += forControl(At(utf8, at + length - 1));
    }
    at += std::max<std::size_t>(length, 1);
  }
  return shown;
}

std::string Dumped(const nlohmann::ordered_json& json, int indent) {
  constexpr const char* kDigits = "0123456789abcdef";
  const auto replace = nlohmann::ordered_json::error_handler_t::replace;
  return Replaced(json.dump(indent, ' ', false, replace), [](unsigned char code) {
    if (code == '\n') return std::string("\n");
    return std::string("\\u00") + kDigits[code >> 4U] + kDigits[code & 0xFU];
  });
}

}  // namespace

std::string PrintableText(const std::string& utf8) {
  return Replaced(utf8, [](unsigned char code) { return code == '\n' ? '\n' : '?'; });
}

std::string PrintableLine(const std::string& utf8) {
  return Replaced(utf8, [](unsigned char) { return '?'; });
}

std::string PrintableJson(const nlohmann::ordered_json& json) {
  constexpr int kIndent = 2;
  return Dumped(json, kIndent);
}

std::string PrintableJsonLine(const nlohmann::ordered_json& json) {
  constexpr int kNoIndent = -1;
  return Dumped(json, kNoIndent);
}

}  // namespace merivane::batch
