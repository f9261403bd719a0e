// Custom fields of a plan: their values, and the declarations that give them names and lists.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "element.h"
#include "store/connection.h"

namespace merivane::mspdi {

using namespace runtime;
using namespace store;

// Numbers of a table's column "CATEGORY". Links have texts, and no custom fields.
enum class Owner { kTask = 0, kResource = 1, kAssignment = 3, kLink = 4 };

struct CustomField {
  Owner owner = Owner::kTask;
  std::string name;            // "Text1", "Outline Code3"
  bool isOutlineCode = false;  // a tree of values, not a value of its own
};

// None for a number that is no custom field.
[[nodiscard]] std::optional<CustomField> CustomFieldOf(std::int64_t number);

inline constexpr std::int64_t kText1Field = 188743731;

class CustomFields {
 public:
  // From MSP_TEXT_FIELDS and its siblings, MSP_OUTLINE_CODES, MSP_FIELD_ATTRIBUTES and
  // MSP_ATTRIBUTE_STRINGS. What a database lacks is empty.
  CustomFields(Connection& connection, std::int32_t project);

  // "Text1" is the key of the way back and is declared always.
  void WriteOutlineCodes(Element& project) const;
  void WriteDeclarations(Element& project) const;

  // The values of one owner, without the fields that `leftOut` names.
  void WriteValues(Owner owner, std::int64_t uid, Element& element, const char* name,
                   std::int64_t leftOut = 0) const;
  void WriteCodes(Owner owner, std::int64_t uid, Element& element, const char* name) const;

  // The text of any field, a built-in one such as a hyperlink among them; empty without one.
  std::string TextOf(Owner owner, std::int64_t uid, std::int64_t field) const;

  // Values of numbers that are no field that this program knows.
  std::size_t Unknown() const { return unknown_; }

 private:
  struct FieldValue {
    std::int64_t field = 0;
    Kind kind = Kind::kText;
    std::int8_t format = 0;  // of a duration, where it is one
    Value value;
  };
  struct Code {
    std::int64_t uid = 0;
    std::int64_t parent = 0;
    std::string value;
    std::string description;
  };
  struct Declaration {
    std::string alias;
    std::string formula;
  };

  struct Table;
  void ReadValues(Connection& connection, std::int32_t project, const Table& table);
  void ReadCodes(Connection& connection, std::int32_t project);
  void ReadDeclarations(Connection& connection, std::int32_t project);
  std::map<std::int64_t, std::vector<std::string>> ReadStrings(Connection& connection,
                                                               std::int32_t project) const;

  std::span<const FieldValue> ValuesOf(Owner owner, std::int64_t uid) const;

  std::unordered_map<std::int64_t, std::vector<FieldValue>> values_;  // by category and UID
  std::map<std::int64_t, std::vector<Code>> codes_;                   // by field
  std::map<std::int64_t, Declaration> declarations_;                  // by field
  std::size_t unknown_ = 0;
};

}  // namespace merivane::mspdi
