
#include <algorithm>
#include <charconv>
#include <system_error>

#include "runtime/code_page.h"
#include "runtime/text.h"
#include "system_files.h"

namespace merivane::platform {

using namespace runtime;

namespace {

constexpr std::string_view kRoot = "HKEY_CLASSES_ROOT\\";

std::string Folded(std::string_view key) { return UpperCase(FromUtf8(key)); }

// A text in double quotes with its escapes resolved; nothing where it has no end.
std::optional<std::string> QuotedText(std::string_view value) {
  std::string text;
  for (std::size_t at = 1; at < value.size(); ++at) {
    if (value[at] == '"') return text;
    if (value[at] == '\\' && ++at == value.size()) break;
    text += value[at];
  }
  return std::nullopt;
}

// Bytes in two digits each between commas, a UTF-16 text with its NUL.
std::optional<std::string> TextOfHex(std::string_view digits) {
  std::string bytes;
  while (!digits.empty()) {
    const std::size_t end = std::min(digits.find(','), digits.size());
    const std::string_view item = Stripped(digits.substr(0, end));
    unsigned char byte = 0;
    const auto read = std::from_chars(item.data(), item.data() + item.size(), byte, 16);
    if (item.empty() || read.ec != std::errc() || read.ptr != item.data() + item.size()) {
      return std::nullopt;
    }
    bytes += static_cast<char>(byte);
    digits.remove_prefix(std::min(end + 1, digits.size()));
  }
  const std::string text = Utf8OfUtf16(bytes, ByteOrder::kLowFirst);
  return text.substr(0, text.find_last_not_of('\0') + 1);
}

std::optional<std::string> TextValue(std::string_view value) {
  if (value.starts_with('"')) return QuotedText(value);
  for (const std::string_view kind : {"hex(1):", "hex(2):"}) {
    if (EqualNoCase(value.substr(0, kind.size()), kind)) {
      return TextOfHex(value.substr(kind.size()));
    }
  }
  return std::nullopt;
}

// Bytes go on in the next line behind a backslash.
std::vector<std::string> WithoutContinuations(const std::vector<std::string>& lines) {
  std::vector<std::string> joined;
  bool goesOn = false;
  for (const std::string& line : lines) {
    if (goesOn) {
      joined.back() += line;
    } else {
      joined.push_back(line);
    }
    goesOn = joined.back().ends_with('\\') && !joined.back().starts_with(';');
    if (goesOn) joined.back().pop_back();
  }
  return joined;
}

}  // namespace

RegText::RegText(const std::vector<std::string>& lines) {
  for (const std::string_view line : WithoutContinuations(lines)) {
    if (line.starts_with('[')) {
      ReadKey(line);
    } else if (line.starts_with('@') && key_) {
      const std::string_view rest = Stripped(line.substr(1));
      if (rest.starts_with('=')) ReadDefault(Stripped(rest.substr(1)));
    }
  }
}

std::optional<std::string> RegText::Default(std::string_view key) const {
  const auto entry = defaults_.find(Folded(key));
  if (entry == defaults_.end()) return std::nullopt;
  return entry->second;
}

void RegText::ReadKey(std::string_view line) {
  key_.reset();
  const std::size_t end = line.rfind(']');
  if (end == std::string_view::npos) return;
  line = line.substr(1, end - 1);
  const bool removed = line.starts_with('-');
  if (removed) line.remove_prefix(1);
  if (!EqualNoCase(line.substr(0, kRoot.size()), kRoot)) return;
  const std::string key = Folded(line.substr(kRoot.size()));
  if (removed) {
    RemoveTree(key);
  } else {
    key_ = key;
  }
}

void RegText::ReadDefault(std::string_view value) {
  if (value == "-") {
    defaults_.erase(*key_);
  } else if (auto text = TextValue(value)) {
    defaults_[*key_] = std::move(*text);
  }
}

void RegText::RemoveTree(const std::string& key) {
  std::erase_if(defaults_, [&](const auto& entry) {
    return entry.first == key || entry.first.starts_with(key + "\\");
  });
}

}  // namespace merivane::platform
