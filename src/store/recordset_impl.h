// What a record set is made of: its rows, its position, and the changes that wait for Update.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine.h"
#include "rows.h"
#include "store/recordset.h"

namespace merivane::store {

enum class Position {
  kFresh,  // nothing asked yet: the first row, if there is one
  kBof,
  kRow,
  kEof,
  kEmpty,  // at BOF and EOF
};

struct Recordset::Impl final : private OpenSet {
  Impl() = default;
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void CheckOpen() const;            // 3704
  void CheckNotOpen() const;         // 3705
  void CheckField(int index) const;  // 3265
  void CheckOnRow();                 // 3021

  void Prepare(std::string_view sql, Connection* from, bool fixed);
  void Open(Engine& database);
  void Open(Engine& database, std::unique_ptr<Rows> list);
  void Close() noexcept;

  void Ask();
  void MoveTo(Place target, Position otherwise);
  Value Read(int field);
  void Change(int field, Value value);
  void SaveChanges();
  void DropChanges() noexcept;

  std::string source;
  Connection* connection = nullptr;
  bool isStatic = false;

  Engine* engine = nullptr;
  std::unique_ptr<Rows> rows;  // null while closed
  Position at = Position::kFresh;
  Place place = kNoPlace;
  bool adding = false;
  std::vector<FieldChange> changes;

 private:
  void ConnectionCloses() noexcept override { Close(); }
  FieldChange* FindChange(int column);
};

}  // namespace merivane::store
