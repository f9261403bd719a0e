#include "system_files.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include "runtime/code_page.h"

namespace merivane::platform {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

std::string DecodedText(const std::string& bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return bytes.substr(3);
  if (bytes.starts_with("\xFF\xFE"))
    return Utf8OfUtf16(std::string_view(bytes).substr(2), ByteOrder::kLowFirst);
  if (bytes.starts_with("\xFE\xFF"))
    return Utf8OfUtf16(std::string_view(bytes).substr(2), ByteOrder::kHighFirst);
  return bytes;
}

}  // namespace

std::filesystem::path UserFolder() {
  // A relative folder in the variable counts as none.
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/') return std::filesystem::path(config) / "merivane";
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] == '\0') return {};
  return std::filesystem::path(home) / ".config" / "merivane";
}

std::optional<std::vector<std::string>> ReadSystemLines(const std::filesystem::path& file) {
  std::error_code ignored;
  std::ifstream stream(file, std::ios::binary);
  if (!stream || std::filesystem::is_directory(file, ignored)) return std::nullopt;
  const std::string text = DecodedText({std::istreambuf_iterator<char>(stream), {}});
  std::vector<std::string> lines;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", from), text.size());
    const std::string_view line = Stripped(std::string_view(text).substr(from, end - from));
    if (!line.empty()) lines.emplace_back(line);
    from = end + 1;
  }
  return lines;
}

std::string_view Stripped(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Utf8OfUtf16(std::string_view bytes, ByteOrder order) {
  const auto unit = [&](std::size_t at) -> char32_t {
    const char32_t first = static_cast<unsigned char>(bytes[at]);
    const char32_t second = static_cast<unsigned char>(bytes[at + 1]);
    return order == ByteOrder::kLowFirst ? first | second << 8U : first << 8U | second;
  };
  std::string text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t code = unit(at);
    if (code >= 0xD800 && code <= 0xDFFF) {
      const char32_t next = code <= 0xDBFF && at + 3 < bytes.size() ? unit(at + 2) : 0;
      const bool pair = next >= 0xDC00 && next <= 0xDFFF;
      code = pair ? 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00) : kReplacement;
      if (pair) at += 2;
    }
    runtime::AppendUtf8(text, code);
  }
  return text;
}

}  // namespace merivane::platform
