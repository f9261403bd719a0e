#include <filesystem>
#include <vector>

#include "platform/profile_file.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "system_files.h"

namespace merivane::platform {

using namespace runtime;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongest = 255;

bool SameName(std::string_view a, std::string_view b) {
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
      inSection = SameName(line.substr(1, close - 1), section);
    } else if (inSection && !line.starts_with(';') && equals != std::string_view::npos &&
               SameName(line.substr(0, equals), key)) {
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

}  // namespace merivane::platform
