#include "outline_rows.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/text.h"
#include "xml_file.h"

namespace merivane::mspdi {

using namespace runtime;

namespace {

// "1.2.1"; none where it isn't written so.
std::vector<std::int64_t> OutlineNumberOf(const pugi::xml_node& node) {
  std::string text;
  for (const pugi::xml_node& field : node.children()) {
    if (LocalName(field) == "OutlineNumber") text = Trim(TextOf(field));
  }
  std::vector<std::int64_t> numbers;
  const char* const end = text.data() + text.size();
  for (const char* at = text.data();; ++at) {
    const auto parsed = std::from_chars(at, end, numbers.emplace_back());
    if (parsed.ec != std::errc()) return {};
    if (parsed.ptr == end) return numbers;
    if (*parsed.ptr != '.') return {};
    at = parsed.ptr;
  }
}

// By what a key tells of each row. False where a task has none. Blank rows stay behind their
// neighbours.
template <typename KeyOf>
bool SortRows(std::vector<RowHead>& rows, const KeyOf& keyOf) {
  using Key = decltype(keyOf(rows.front()));
  std::vector<std::pair<Key, RowHead>> keyed;
  for (const RowHead& row : rows) {
    Key key = row.isWhole ? Key() : keyOf(row);
    if (key == Key() && !row.isWhole) {
      if (row.isTask) return false;
      if (!keyed.empty()) key = keyed.back().first;
    }
    keyed.emplace_back(std::move(key), row);
  }
  std::ranges::stable_sort(keyed, {}, &std::pair<Key, RowHead>::first);
  std::ranges::transform(keyed, rows.begin(), &std::pair<Key, RowHead>::second);
  return true;
}

}  // namespace

RowHead HeadOf(const pugi::xml_node& node) {
  RowHead head{.node = node, .id = {}};
  std::optional<std::int64_t> uid;
  bool isNamed = false;
  bool isBlank = false;
  for (const pugi::xml_node& field : node.children()) {
    const std::string_view name = LocalName(field);
    if (name == "UID") uid = field.text().as_llong(1);
    if (name == "ID") head.id = field.text().as_llong(0);
    if (name == "Name") isNamed = !field.text().empty();
    if (name == "IsNull") isBlank = field.text().as_bool();
    if (name == "OutlineLevel") head.level = field.text().as_llong(1);
  }
  head.isWhole = IsWhole(uid, head.level);
  head.isTask = isNamed && !isBlank && !head.isWhole;
  return head;
}

std::vector<RowHead> RowsInOrder(const pugi::xml_node& tasks) {
  std::vector<RowHead> rows;
  for (const pugi::xml_node& node : tasks.children()) {
    if (LocalName(node) == "Task") rows.push_back(HeadOf(node));
  }
  if (rows.empty() || SortRows(rows, [](const RowHead& row) { return row.id; })) return rows;
  SortRows(rows, [](const RowHead& row) { return OutlineNumberOf(row.node); });
  return rows;
}

bool StandInOrder(const std::vector<RowHead>& rows) {
  std::optional<std::int64_t> last;
  for (const RowHead& row : rows) {
    const bool isBlank = !row.isWhole && !row.isTask && !row.id;
    if (isBlank) continue;
    const auto key = row.isWhole ? std::nullopt : row.id;
    if ((row.isTask && !key) || key < last) return false;
    last = key;
  }
  return true;
}

std::int64_t LevelsOfWhole(const std::vector<RowHead>& rows) {
  bool hasWhole = false;
  std::optional<std::int64_t> least;
  for (const RowHead& row : rows) {
    hasWhole = hasWhole || row.isWhole;
    if (row.isTask) least = std::min(least.value_or(row.level), row.level);
  }
  return hasWhole ? std::max<std::int64_t>(least.value_or(1) - 1, 0) : 0;
}

}  // namespace merivane::mspdi
