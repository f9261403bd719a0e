#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/system_settings.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "system_files.h"

namespace merivane::platform {

std::optional<std::string> ReadClassDefault(const std::string& key) {
  const auto lines = ReadSystemLines(UserFolder() / "classes.reg");
  if (!lines) return std::nullopt;
  auto value = RegText(*lines).Default(key);
  if (value) *value += '\0';
  return value;
}

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongest = 255;

bool IsSameIniName(std::string_view a, std::string_view b) {
  return EqualNoCase(FromUtf8(Stripped(a)), FromUtf8(Stripped(b)));
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string Shortened(std::string_view value) {
  std::size_t characters = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const bool starts = (static_cast<unsigned char>(value[at]) & 0xC0) != 0x80;
    if (starts && ++characters > kLongest) return std::string(value.substr(0, at));
  }
  return std::string(value);
}

std::optional<std::vector<std::string>> ReadIniLines(const std::string& iniFile) {
  const bool bare = iniFile.find('/') == std::string::npos;
  if (bare) {
    if (auto lines = ReadSystemLines(UserFolder() / iniFile)) return lines;
  }
  return ReadSystemLines(iniFile);
}

std::optional<std::string> FindValue(const std::vector<std::string>& lines,
                                     const std::string& section, const std::string& key) {
  bool inSection = false;
  for (const std::string_view line : lines) {
    const std::size_t close = line.rfind(']');
    const std::size_t equals = line.find('=');
    if (line.starts_with('[') && close != std::string_view::npos) {
      inSection = IsSameIniName(line.substr(1, close - 1), section);
    } else if (inSection && !line.starts_with(';') && equals != std::string_view::npos &&
               IsSameIniName(line.substr(0, equals), key)) {
      return std::string(WithoutQuotes(Stripped(line.substr(equals + 1))));
    }
  }
  return std::nullopt;
}

}  // namespace

std::string ReadProfileString(const std::string& section, const std::string& key,
                              const std::string& fallback, const std::string& iniFile) {
  const auto lines = ReadIniLines(iniFile);
  auto value = lines ? FindValue(*lines, section, key) : std::nullopt;
  if (!value) value = fallback.substr(0, fallback.find_last_not_of(' ') + 1);
  return Shortened(*value);
}

namespace {

std::string_view Language() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || value[0] == '\0') continue;
    const std::string_view locale = value;
    return locale.substr(0, locale.find_first_of("_.@"));
  }
  return {};
}

}  // namespace

std::int32_t SystemOemCodePage() {
  const std::string_view language = Language();
  if (language == "ja" || language == "japanese") return 932;
  if (language == "ko" || language == "korean") return 949;
  return 437;
}

}  // namespace merivane::platform
