// Rows that are copied whole when they are first asked for, and don't change: those of an
// aggregate, of a view, of a table without row numbers, and lists that no table holds.
#pragma once

#include <vector>

#include "rows.h"
#include "select_shape.h"

namespace merivane::store {

class SnapshotRows : public Rows {
 public:
  SnapshotRows(SelectShape& shape, std::vector<Literal> literals, const std::string& path)
      : shape_(&shape), literals_(std::move(literals)), path_(path) {}
  SnapshotRows(std::string fieldName, std::vector<std::string> texts);

  Place First() override { return Count() == 0 ? kNoPlace : 0; }
  Place Last() override { return Count() == 0 ? kNoPlace : Count() - 1; }
  Place After(Place place) override { return place + 1 < Count() ? place + 1 : kNoPlace; }
  Place Before(Place place) override { return place == 0 ? kNoPlace : place - 1; }
  std::size_t Count() override;
  bool IsThere(Place /*place*/) override { return true; }

  int FieldCount() const override;
  std::string FieldName(int field) const override;
  int FindField(std::string_view name) const override;
  Value Read(Place place, int field) override;

 private:
  SelectShape* shape_ = nullptr;
  std::vector<Literal> literals_;
  std::string path_;
  std::string fieldName_;
  bool taken_ = false;
  std::vector<std::vector<Value>> rows_;
};

}  // namespace merivane::store
