// The junctions and links of one scenario while its precedence links are turned into them, with
// the look-ups that the rules need. Counts and numbers have 16 bits: error 6 beyond.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "program/model_words.h"
#include "runtime/value.h"

namespace merivane::neutraltext {

using namespace runtime;
using namespace program;

inline constexpr std::string_view kWrittenSyncAnd = "Sync. And";

struct JunctionRow {
  std::int16_t number = 0;
  std::string identifier;  // "J" and the row's index, from 1
  std::string_view cardinality;
  std::string_view type;
};

struct LinkRow {
  std::int16_t number = 0;
  std::int16_t origin = 0;  // a task or a junction
  std::int16_t destination = 0;
  bool deleted = false;  // replaced by others: not written, but still found by every look-up
};

class JunctionTable {
 public:
  // Raises `nextElementNum` and takes its value as the junction's number, which it gives back.
  std::int16_t Add(std::int16_t& nextElementNum, std::string_view cardinality,
                   std::string_view type);

  // Makes the first junction of that number and cardinality a "Sync. And" one; False without one.
  // A table that never got a row is error 9.
  bool MakeSync(std::int16_t number, std::string_view cardinality);

  const std::vector<JunctionRow>& Rows() const { return rows_; }

 private:
  std::vector<JunctionRow> rows_;
  std::unordered_map<std::int16_t, std::size_t> byNumber_;
  std::int16_t nJunctions_ = 0;
};

class LinkTable {
 public:
  // Raises `nextElementNum` first, then takes the ends: one that is Null or too large for 16 bits
  // fails behind that.
  void Add(std::int16_t& nextElementNum, const Value& origin, const Value& destination);
  void AddUnlessThere(std::int16_t& nextElementNum, std::int16_t origin, std::int16_t destination);

  bool LinkExists(std::int16_t origin, std::int16_t destination) const;

  // Indexes of the rows with that end, ascending. Good until the next Add.
  const std::vector<std::size_t>& WithOrigin(std::int16_t origin) const;
  const std::vector<std::size_t>& WithDestination(std::int16_t destination) const;

  const std::vector<LinkRow>& Rows() const { return rows_; }
  const LinkRow& Row(std::size_t index) const { return rows_[index]; }
  void Delete(std::size_t index) { rows_[index].deleted = true; }

 private:
  using EndIndex = std::unordered_map<std::int16_t, std::vector<std::size_t>>;
  static const std::vector<std::size_t>& Find(const EndIndex& index, std::int16_t end);

  std::vector<LinkRow> rows_;
  EndIndex byOrigin_;
  EndIndex byDestination_;
  std::unordered_set<std::uint32_t> pairs_;
  std::int16_t nLinks_ = 0;
};

// LINK_UIDs of the rows that have already become links.
class ConsumedLinks {
 public:
  void Add(const Value& linkUid);
  bool Empty() const { return uids_.empty(); }
  bool Holds(const Value& linkUid) const;

 private:
  std::unordered_set<std::int16_t> uids_;
  std::int16_t nConsumed_ = 0;
};

struct ScenarioLinks {
  JunctionTable junctionTable;
  LinkTable linkTable;
  ConsumedLinks consumedLinks;
};

}  // namespace merivane::neutraltext
