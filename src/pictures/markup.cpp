#include <cmath>

#include "runtime/code_page.h"
#include "text_lines.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

bool IsRefused(unsigned char letter) {
  return letter < ' ' && letter != '\n' && letter != '\r' && letter != '\t';
}

// The five codes without a character would be control characters.
bool HasNoCharacter(unsigned char letter) {
  return letter == 0x7f || letter == 0x81 || letter == 0x8d || letter == 0x8f || letter == 0x90 ||
         letter == 0x9d;
}

}  // namespace

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (letter == '&') {
      escaped += "&amp;";
    } else if (letter == '<') {
      escaped += "&lt;";
    } else if (letter == '>') {
      escaped += "&gt;";
    } else if (letter == '"') {
      escaped += "&quot;";
    } else if (IsRefused(code) || HasNoCharacter(code)) {
      escaped += "\xef\xbf\xbd";
    } else if (code < 0x80) {
      escaped += letter;
    } else {
      escaped += ToUtf8(std::string_view(&letter, 1));
    }
  }
  return escaped;
}

std::string Number(double value) {
  const long hundredths = std::lround(value * 100);
  const long rest = std::labs(hundredths % 100);
  std::string text = hundredths < 0 ? "-" : "";
  text += std::to_string(std::labs(hundredths) / 100);
  if (rest == 0) return text;
  text += rest < 10 ? ".0" : ".";
  return text + std::to_string(rest % 10 == 0 && rest >= 10 ? rest / 10 : rest);
}

}  // namespace merivane::pictures
