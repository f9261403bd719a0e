// Registry text: keys in brackets, a value a line.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace merivane::platform {

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
