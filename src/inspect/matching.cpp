#include "matching.h"

#include <unordered_map>
#include <utility>

namespace merivane::inspect {

Matching::Matching(const std::vector<MatchItem>& before, const std::vector<MatchItem>& after,
                   OwnerBefore ownerBefore)
    : before_(before),
      after_(after),
      ownerBefore_(std::move(ownerBefore)),
      isTaken_(before.size()),
      ofAfter_(after.size()) {
  Pass(Key::kNumberAndName);
  // Items that own items: each pass reaches one level more.
  while (Pass(Key::kPlaceAndName) && !ownerBefore_) {
  }
  Pass(Key::kName);
  while (Pass(Key::kPlaceAndNumber) && !ownerBefore_) {
  }
}

std::vector<std::size_t> Matching::Gone() const {
  std::vector<std::size_t> gone;
  for (std::size_t index = 0; index < before_.size(); ++index) {
    if (!isTaken_[index]) gone.push_back(index);
  }
  return gone;
}

std::optional<std::int32_t> Matching::NumberBefore(std::int32_t after) const {
  const auto known = numberBefore_.find(after);
  return known == numberBefore_.end() ? std::nullopt : std::optional(known->second);
}

std::optional<std::int32_t> Matching::OwnerOf(const MatchItem& after) const {
  if (after.owner == 0) return 0;
  return ownerBefore_ ? ownerBefore_(after.owner) : NumberBefore(after.owner);
}

// Nothing for an item that can't be found this way.
std::optional<std::string> Matching::KeyOf(Key key, const MatchItem& item,
                                           std::optional<std::int32_t> owner) const {
  const std::string number = std::to_string(item.number);
  switch (key) {
    case Key::kNumberAndName:
      return number + ' ' + item.name;
    case Key::kName:
      return item.name;
    case Key::kPlaceAndName:
      break;
    case Key::kPlaceAndNumber:
      if (!owner) return std::nullopt;
      return std::to_string(*owner) + ' ' + number;
  }
  if (!owner) return std::nullopt;
  return std::to_string(*owner) + ' ' + item.name;
}

// Of several with one key, the first goes with the first. True where some were found.
bool Matching::Pass(Key key) {
  std::unordered_map<std::string, std::vector<std::size_t>> open;
  for (std::size_t index = before_.size(); index-- > 0;) {
    if (isTaken_[index]) continue;
    open[*KeyOf(key, before_[index], before_[index].owner)].push_back(index);
  }
  bool found = false;
  for (std::size_t index = 0; index < after_.size(); ++index) {
    if (ofAfter_[index]) continue;
    const auto wanted = KeyOf(key, after_[index], OwnerOf(after_[index]));
    const auto entry = wanted ? open.find(*wanted) : open.end();
    if (entry == open.end() || entry->second.empty()) continue;
    const std::size_t match = entry->second.back();
    entry->second.pop_back();
    isTaken_[match] = true;
    ofAfter_[index] = match;
    numberBefore_.emplace(after_[index].number, before_[match].number);
    found = true;
  }
  return found;
}

}  // namespace merivane::inspect
