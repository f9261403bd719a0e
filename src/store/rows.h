// The rows of an open record set, by place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "table_data.h"

namespace merivane::store {

using Place = std::size_t;
inline constexpr Place kNoPlace = std::numeric_limits<Place>::max();

// Places hold from one call to the next, whatever is written. First, Last, After and Before give
// kNoPlace where there is no row, pass over rows deleted since, and read no more than they need.
class Rows {
 public:
  virtual ~Rows() = default;
  Rows() = default;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  virtual Place First() = 0;
  virtual Place Last() = 0;
  virtual Place After(Place place) = 0;
  virtual Place Before(Place place) = 0;
  virtual std::size_t Count() = 0;
  virtual bool IsThere(Place place) = 0;  // not deleted since

  virtual int FieldCount() const = 0;
  virtual std::string FieldName(int field) const = 0;
  virtual int FindField(std::string_view name) const = 0;  // -1 where there is none
  virtual Value Read(Place place, int field) = 0;          // error 3021 for a row deleted since

  // Rows that can't be written throw 3251 from each of these.
  virtual void CheckWritable() const;
  virtual int ColumnOf(int field) const;
  virtual ColumnKind KindOf(int column) const;
  virtual void Insert(std::span<const FieldChange> changes);  // the new row's place is the last
  // Writes the changes that differ from what the row holds.
  virtual void Update(Place place, std::vector<FieldChange>& changes);
  virtual void Delete(Place place);
};

}  // namespace merivane::store
