// Texts that a test changes in some places.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace merivane::test {

// Each passage must stand in the text; its first place is changed.
inline std::string With(
    std::string text,
    std::initializer_list<std::pair<std::string_view, std::string_view>> changes) {
  for (const auto& [passage, other] : changes) {
    const std::size_t at = text.find(passage);
    if (at == std::string::npos) return "no such passage: " + std::string(passage);
    text.replace(at, passage.size(), other);
  }
  return text;
}

}  // namespace merivane::test
