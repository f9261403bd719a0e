// Where the rows of a plan's tasks stand in its outline, told before a row is read as a whole: by
// what can be read of it. What can't is refused with its row.
#pragma once

#include <cstdint>
#include <optional>
#include <pugixml.hpp>
#include <vector>

namespace merivane::mspdi {

// The row that stands for the plan as a whole.
inline bool IsWhole(std::optional<std::int64_t> uid, std::int64_t level) {
  return uid == 0 || level == 0;
}

struct RowHead {
  pugi::xml_node node;
  std::optional<std::int64_t> id;
  std::int64_t level = 1;
  bool isWhole = false;
  bool isTask = false;
};

RowHead HeadOf(const pugi::xml_node& node);

// The order of the outline is that of the IDs, or where not all have one, of the outline numbers,
// otherwise the file's own.
std::vector<RowHead> RowsInOrder(const pugi::xml_node& tasks);

// Whether the rows stand so already, by their IDs.
bool StandInOrder(const std::vector<RowHead>& rows);

// Levels above the tasks, where the whole plan takes the first one.
std::int64_t LevelsOfWhole(const std::vector<RowHead>& rows);

}  // namespace merivane::mspdi
