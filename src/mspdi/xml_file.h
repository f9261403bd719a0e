// A file of XML in memory, and the words for what is wrong in it.
#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/new_file.h"

namespace merivane::mspdi {

class XmlFile {
 public:
  // See ReadPlanFile for the failures.
  explicit XmlFile(const runtime::Output& file);

  pugi::xml_node Root() const { return document_.document_element(); }
  std::size_t LineOf(const pugi::xml_node& node) const;

  // "plan.xml, line 7: " and what was found (Windows-1252), as error 321.
  [[noreturn]] void Refuse(std::size_t line, const std::string& found) const;
  [[noreturn]] void Refuse(const pugi::xml_node& node, const std::string& found) const {
    Refuse(LineOf(node), found);
  }

 private:
  void Load(const std::string& path);
  void FindLines();
  void RefuseOtherEncodings() const;
  void RefuseDefinitionsAndEntities() const;
  void Parse();
  void RefuseDeclaredEncoding() const;
  void RefuseDeepNesting() const;
  std::size_t LineAt(std::size_t offset) const;

  std::string name_;  // Windows-1252, without its folder
  std::string text_;  // the parser works in it: the nodes refer to its characters
  std::vector<std::uint32_t> lineEnds_;  // a text has 1 GB at most
  pugi::xml_document document_;
};

// The name without the prefix of its namespace.
std::string_view LocalName(const pugi::xml_node& node);

// The text of an element, UTF-8.
std::string TextOf(const pugi::xml_node& node);

}  // namespace merivane::mspdi
