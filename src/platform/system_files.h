// Small files that the user or the system keeps for this program, registry text among them.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace merivane::platform {

// The folder merivane in the user's configuration folder; empty where there is no such folder.
std::filesystem::path UserFolder();

// Lines of a text file in UTF-8 or, with a byte order mark, in UTF-16; nothing where it can't be
// read. The lines come in UTF-8, without their ends and without blanks or tabs around; empty ones
// are left out.
[[nodiscard]] std::optional<std::vector<std::string>> ReadSystemLines(
    const std::filesystem::path& file);

std::string_view Stripped(std::string_view text);  // without blanks and tabs around

enum class ByteOrder { kLowFirst, kHighFirst };

// UTF-8 of UTF-16 in bytes. Half a character becomes U+FFFD.
std::string Utf8OfUtf16(std::string_view bytes, ByteOrder order);

// The default values under HKEY_CLASSES_ROOT. Later lines overrule earlier ones; "[-KEY]" and
// "@=-" take away what stood before. Values that are no text, and lines that mean nothing, are
// passed over.
class RegText {
 public:
  explicit RegText(const std::vector<std::string>& lines);

  [[nodiscard]] std::optional<std::string> Default(std::string_view key) const;

 private:
  void ReadKey(std::string_view line);
  void ReadDefault(std::string_view value);
  void RemoveTree(const std::string& key);

  std::map<std::string, std::string> defaults_;  // keys in capitals
  std::optional<std::string> key_;               // of the lines being read; unset: a foreign one
};

}  // namespace merivane::platform
