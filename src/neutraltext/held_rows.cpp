#include "neutraltext/held_rows.h"

#include <algorithm>
#include <utility>

#include "program/error_boxes.h"
#include "runtime/conversions.h"

namespace merivane::neutraltext {

void HeldRows::Take(RowChange change, std::string_view table, std::span<const Cell> cells) {
  if (change == RowChange::kAdded) {
    last_[table] = rows_.size();
    const auto isGiven = [](const Cell& cell) { return !IsBlank(cell.value); };
    std::vector<Field>& fields = rows_.emplace_back(Row{table, {}}).fields;
    fields.reserve(static_cast<std::size_t>(std::ranges::count_if(cells, isGiven)));
    for (const Cell& cell : cells) {
      if (isGiven(cell)) fields.push_back({cell.column, cell.value});
    }
    return;
  }
  const auto last = last_.find(table);
  if (last == last_.end()) return;
  std::vector<Field>& fields = rows_[last->second].fields;
  for (const Cell& cell : cells) {
    const auto known = std::find_if(fields.begin(), fields.end(), [&](const Field& field) {
      return field.column == cell.column;
    });
    if (known == fields.end()) {
      fields.push_back({cell.column, cell.value});
    } else {
      known->value = cell.value;
    }
  }
}

void HeldRows::StoreIn(ModelToProject& state) {
  std::unordered_map<std::string_view, Recordset> tables;
  try {
    for (; !rows_.empty(); rows_.pop_front()) {
      Row& row = rows_.front();
      const auto [table, isNew] = tables.try_emplace(row.table);
      Recordset& rows = table->second;
      if (isNew) rows.OpenDynamic("select * from " + std::string(row.table), state.gMspConn.get());
      rows.AddNew();
      rows.SetField("Msp_ProjID", state.gMspProjId);
      for (Field& field : row.fields) rows.SetField(field.column, std::move(field.value));
      rows.Update();
    }
  } catch (const RunTimeError& error) {
    ReportError(state.desktop, error);
  }
  rows_.clear();
  last_.clear();
}

}  // namespace merivane::neutraltext
