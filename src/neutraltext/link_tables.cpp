#include "link_tables.h"

#include "runtime/conversions.h"
#include "runtime/run_time_error.h"

namespace merivane::neutraltext {

namespace {

std::uint32_t PairKey(std::int16_t origin, std::int16_t destination) {
  return static_cast<std::uint32_t>(static_cast<std::uint16_t>(origin)) << 16U |
         static_cast<std::uint16_t>(destination);
}

}  // namespace

std::int16_t JunctionTable::Add(std::int16_t& nextElementNum, std::string_view cardinality,
                                std::string_view type) {
  nJunctions_ = AddInt16(nJunctions_, 1);
  nextElementNum = AddInt16(nextElementNum, 1);
  byNumber_.emplace(nextElementNum, rows_.size());
  rows_.push_back({nextElementNum, "J" + std::to_string(nJunctions_), cardinality, type});
  return nextElementNum;
}

bool JunctionTable::MakeSync(std::int16_t number, std::string_view cardinality) {
  if (rows_.empty()) throw RunTimeError(kSubscriptOutOfRange);
  const auto found = byNumber_.find(number);
  if (found == byNumber_.end() || rows_[found->second].cardinality != cardinality) return false;
  rows_[found->second].type = kWrittenSyncAnd;
  return true;
}

void LinkTable::Add(std::int16_t& nextElementNum, const Value& origin, const Value& destination) {
  nLinks_ = AddInt16(nLinks_, 1);
  nextElementNum = AddInt16(nextElementNum, 1);
  const LinkRow row{nextElementNum, ToInt16(origin), ToInt16(destination)};
  byOrigin_[row.origin].push_back(rows_.size());
  byDestination_[row.destination].push_back(rows_.size());
  pairs_.insert(PairKey(row.origin, row.destination));
  rows_.push_back(row);
}

void LinkTable::AddUnlessThere(std::int16_t& nextElementNum, std::int16_t origin,
                               std::int16_t destination) {
  if (!LinkExists(origin, destination)) Add(nextElementNum, origin, destination);
}

bool LinkTable::LinkExists(std::int16_t origin, std::int16_t destination) const {
  return pairs_.contains(PairKey(origin, destination));
}

const std::vector<std::size_t>& LinkTable::WithOrigin(std::int16_t origin) const {
  return Find(byOrigin_, origin);
}

const std::vector<std::size_t>& LinkTable::WithDestination(std::int16_t destination) const {
  return Find(byDestination_, destination);
}

const std::vector<std::size_t>& LinkTable::Find(const EndIndex& index, std::int16_t end) {
  static const std::vector<std::size_t> kNone;
  const auto found = index.find(end);
  return found == index.end() ? kNone : found->second;
}

void ConsumedLinks::Add(const Value& linkUid) {
  nConsumed_ = AddInt16(nConsumed_, 1);
  uids_.insert(ToInt16(linkUid));
}

bool ConsumedLinks::Holds(const Value& linkUid) const {
  if (linkUid.IsNull()) return false;
  const double uid = ToDouble(linkUid);
  if (uid < INT16_MIN || uid > INT16_MAX) return false;
  const auto whole = static_cast<std::int16_t>(uid);
  return whole == uid && uids_.contains(whole);
}

}  // namespace merivane::neutraltext
