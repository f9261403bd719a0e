// Which element of one file is which of another: by its number, its name, and the place that it
// stands in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace merivane::inspect {

struct MatchItem {
  std::int32_t number = 0;
  std::string name;
  std::int32_t owner = 0;  // what it stands in, by the numbers of its own file; 0: nothing
};

class Matching {
 public:
  // `ownerBefore` gives the number that an owner of the second file has in the first; nothing for
  // one that the first lacks. Without it the items are each other's owners.
  using OwnerBefore = std::function<std::optional<std::int32_t>(std::int32_t)>;
  Matching(const std::vector<MatchItem>& before, const std::vector<MatchItem>& after,
           OwnerBefore ownerBefore = nullptr);

  // For each item of the second file the index of the one in the first, if it is there.
  const std::vector<std::optional<std::size_t>>& OfAfter() const { return ofAfter_; }
  // The indices of items of the first file that the second lacks.
  std::vector<std::size_t> Gone() const;
  // The number in the first file of what has this one in the second.
  std::optional<std::int32_t> NumberBefore(std::int32_t after) const;

 private:
  enum class Key { kNumberAndName, kPlaceAndName, kName, kPlaceAndNumber };
  bool Pass(Key key);
  std::optional<std::string> KeyOf(Key key, const MatchItem& item,
                                   std::optional<std::int32_t> owner) const;
  std::optional<std::int32_t> OwnerOf(const MatchItem& after) const;

  const std::vector<MatchItem>& before_;
  const std::vector<MatchItem>& after_;
  OwnerBefore ownerBefore_;
  std::vector<bool> isTaken_;  // of the first
  std::vector<std::optional<std::size_t>> ofAfter_;
  std::map<std::int32_t, std::int32_t> numberBefore_;
};

}  // namespace merivane::inspect
