#include "neutraltext/held_rows.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "program/error_boxes.h"
#include "runtime/conversions.h"

namespace merivane::neutraltext {

namespace {

// What a packed value is, in a byte in front of it.
enum class Kind : char { kNull, kShort, kInteger, kReal, kText, kBytes };

template <typename Part>
void Append(std::string& packed, const Part& part) {
  packed.append(reinterpret_cast<const char*>(&part), sizeof part);
}

template <typename Row>
void AppendRow(std::string& packed, const Row& row) {
  packed.reserve(packed.size() + sizeof(std::uint32_t) + row.size());
  Append(packed, static_cast<std::uint32_t>(row.size()));
  packed.append(reinterpret_cast<const char*>(row.data()), row.size());
}

template <typename Part>
Part TakePart(std::string_view& packed) {
  Part part;
  std::memcpy(&part, packed.data(), sizeof part);
  packed.remove_prefix(sizeof part);
  return part;
}

template <typename Row>
Row TakeRow(std::string_view& packed) {
  const auto size = TakePart<std::uint32_t>(packed);
  Row row(packed.begin(), packed.begin() + size);
  packed.remove_prefix(size);
  return row;
}

Value TakeValue(std::string_view& packed) {
  switch (TakePart<Kind>(packed)) {
    case Kind::kShort:
      return TakePart<std::int16_t>(packed);
    case Kind::kInteger:
      return TakePart<std::int64_t>(packed);
    case Kind::kReal:
      return TakePart<double>(packed);
    case Kind::kText:
      return TakeRow<std::string>(packed);
    case Kind::kBytes:
      return TakeRow<Bytes>(packed);
    case Kind::kNull:
      break;
  }
  return {};
}

}  // namespace

void HeldRows::Add(std::string_view column, const Value& value) {
  const auto [number, isNew] =
      numbers_.try_emplace(column.data(), static_cast<std::uint16_t>(columns_.size()));
  if (isNew) columns_.push_back(column);
  Append(packed_, number->second);
  const auto isShort = [](std::int64_t number) {
    return number == static_cast<std::int16_t>(number);
  };
  if (value.IsInteger() && isShort(value.Integer())) {
    Append(packed_, Kind::kShort);
    Append(packed_, static_cast<std::int16_t>(value.Integer()));
  } else if (value.IsInteger()) {
    Append(packed_, Kind::kInteger);
    Append(packed_, value.Integer());
  } else if (value.IsReal()) {
    Append(packed_, Kind::kReal);
    Append(packed_, value.Real());
  } else if (value.IsText()) {
    Append(packed_, Kind::kText);
    AppendRow(packed_, value.Text());
  } else if (value.IsBytes()) {
    Append(packed_, Kind::kBytes);
    AppendRow(packed_, value.GetBytes());
  } else {
    Append(packed_, Kind::kNull);
  }
}

std::vector<HeldRows::Field> HeldRows::Unpacked(std::string_view packed) const {
  std::vector<Field> fields;
  while (!packed.empty()) {
    const std::string_view column = columns_[TakePart<std::uint16_t>(packed)];
    fields.push_back({column, TakeValue(packed)});
  }
  return fields;
}

// A long row is handed over as it is; a short one leaves its room to the next.
std::string HeldRows::Packed() {
  constexpr std::size_t kLong = 1 << 16;
  return packed_.size() < kLong ? packed_ : std::exchange(packed_, {});
}

void HeldRows::Hold(RowChange change, std::string_view table, std::span<const Cell> cells) {
  packed_.clear();
  if (change == RowChange::kAdded) {
    last_[table] = rows_.size();
    for (const Cell& cell : cells) {
      if (!IsBlank(cell.value) && isWanted_(cell.column)) Add(cell.column, cell.value);
    }
    rows_.push_back({table, Packed()});
    return;
  }
  const auto last = last_.find(table);
  if (last == last_.end()) return;
  std::string& row = rows_[last->second].fields;
  std::vector<Field> fields = Unpacked(row);
  for (const Cell& cell : cells) {
    if (!isWanted_(cell.column)) continue;
    const auto known = std::find_if(fields.begin(), fields.end(), [&](const Field& field) {
      return field.column == cell.column;
    });
    if (known == fields.end()) {
      fields.push_back({cell.column, cell.value});
    } else {
      known->value = cell.value;
    }
  }
  for (const Field& field : fields) Add(field.column, field.value);
  row = Packed();
}

void HeldRows::StoreIn(ModelToProject& state) {
  std::unordered_map<std::string_view, Recordset> tables;
  try {
    for (; !rows_.empty(); rows_.pop_front()) {
      const Row& row = rows_.front();
      const auto [table, isNew] = tables.try_emplace(row.table);
      Recordset& rows = table->second;
      if (isNew) rows.OpenDynamic("select * from " + std::string(row.table), state.gMspConn.get());
      rows.AddNew();
      rows.SetField("Msp_ProjID", state.gMspProjId);
      for (Field& field : Unpacked(row.fields)) {
        rows.SetField(field.column, std::move(field.value));
      }
      rows.Update();
    }
  } catch (const RunTimeError& error) {
    ReportError(state.desktop, error);
  }
  rows_.clear();
  last_.clear();
}

}  // namespace merivane::neutraltext
