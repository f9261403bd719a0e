// Values of elements, checked. Each refusal tells the element and what stands in it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "runtime/dates.h"
#include "xml_file.h"

namespace merivane::mspdi {

using namespace runtime;

class XmlValues {
 public:
  explicit XmlValues(const XmlFile& file) : file_(file) {}

  // Windows-1252; counts what has no byte.
  std::string Text(const pugi::xml_node& node);
  // The same with CR LF at the end of each line.
  std::string Lines(const pugi::xml_node& node);

  std::int64_t Integer(const pugi::xml_node& node, std::int64_t least = -2147483648LL,
                       std::int64_t most = 2147483647LL) const;
  bool Flag(const pugi::xml_node& node) const;
  double Units(const pugi::xml_node& node) const;    // 0 or more
  double Minutes(const pugi::xml_node& node) const;  // of a duration "PT16H0M0S"
  // The same of a field that no model takes: nothing where it is no duration.
  static std::optional<double> MinutesIn(const pugi::xml_node& node);

  std::size_t LostCharacters() const { return lost_; }

 private:
  [[noreturn]] void Refuse(const pugi::xml_node& node, const std::string& wanted) const;

  const XmlFile& file_;
  std::size_t lost_ = 0;
};

// The day of "2026-01-05T08:00:00"; nothing for anything else.
[[nodiscard]] std::optional<DateTime> XmlDate(const std::string& text);
// The same with its time; nothing where that is missing or none.
[[nodiscard]] std::optional<DateTime> XmlMoment(const std::string& text);

}  // namespace merivane::mspdi
