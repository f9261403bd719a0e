// A file of XML, as a whole or a piece at a time, and the words for what is wrong in it.
#pragma once

#include <cstdint>
#include <fstream>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/new_file.h"

namespace merivane::mspdi {

class XmlFile {
 public:
  // Opens it. See ReadPlanFile for the failures.
  explicit XmlFile(const runtime::Output& file);

  void ReadWhole();

  // Instead of ReadWhole, with one element of the file in memory. What stands next goes by its own
  // end tag, so that a file has to be plain: without comments and CDATA, nothing but elements
  // between elements. Any failure may come from a file that isn't, which ReadWhole reads.
  void EnterRoot();              // Root() is its tag, without what stands in it
  std::string_view NextName();   // without its prefix, until the next call; at the end of what was
                                 // entered, leaves that and gives nothing
  void Enter();                  // the next one, whose elements come then
  pugi::xml_node ReadElement();  // the next one, until the next call
  void ReadEnd();                // behind the root

  pugi::xml_node Root() const { return document_.document_element(); }
  std::size_t LineOf(const pugi::xml_node& node) const;

  // "plan.xml, line 7: " and what was found (Windows-1252), as error 321.
  [[noreturn]] void Refuse(std::size_t line, const std::string& found) const;
  [[noreturn]] void Refuse(const pugi::xml_node& node, const std::string& found) const {
    Refuse(LineOf(node), found);
  }
  [[noreturn]] void RefuseAsNotPlain() const { Refuse(line_, "this isn't plain."); }

 private:
  bool ReadBlock();
  std::size_t SizeTo(std::string_view mark, std::size_t from);
  void Pass(std::size_t size);
  void SkipSpace();
  std::string_view NextTag();
  void FindLines();
  void RefuseOtherEncodings() const;
  void RefuseDefinitionsAndEntities(std::string_view text) const;
  void Parse(char* text, std::size_t size);
  void ParsePiece(char* text, std::size_t size);
  void RefuseDeclaredEncoding() const;
  void RefuseDeepNesting() const;
  std::size_t LineAt(std::size_t offset) const;

  std::string name_;  // Windows-1252, without its folder
  std::ifstream file_;
  std::size_t size_ = 0;  // as far as it is known
  std::string head_;      // the declaration and the root, which the parser works in, too
  std::string text_;      // the parser works in it: the nodes refer to its characters
  std::size_t at_ = 0;    // where the next piece begins in it
  std::vector<std::uint32_t> lineEnds_;  // a text has 1 GB at most; none of a piece
  std::size_t line_ = 1;                 // of the document's first character
  std::size_t nextLine_ = 1;             // of the next piece
  std::string next_;                     // the name of the next element, with its prefix
  std::vector<std::string> open_;        // the elements that were entered
  bool isEmpty_ = false;                 // the last of them
  pugi::xml_document document_;
};

// The name without the prefix of its namespace.
std::string_view LocalName(std::string_view name);
inline std::string_view LocalName(const pugi::xml_node& node) { return LocalName(node.name()); }

// The text of an element, UTF-8.
std::string TextOf(const pugi::xml_node& node);

}  // namespace merivane::mspdi
