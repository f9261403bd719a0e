// The custom fields of tasks, resources and assignments by their numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace merivane::mspdi {

// Numbers of a table's column "CATEGORY". Links have texts, and no custom fields.
enum class Owner { kTask = 0, kResource = 1, kAssignment = 3, kLink = 4 };

struct CustomField {
  Owner owner = Owner::kTask;
  std::string name;            // "Text1", "Outline Code3"
  bool isOutlineCode = false;  // a tree of values, not a value of its own
};

// None for a number that is no custom field.
[[nodiscard]] std::optional<CustomField> CustomFieldOf(std::int64_t number);

}  // namespace merivane::mspdi
