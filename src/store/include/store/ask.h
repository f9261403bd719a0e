// Record sets over statements that are joined from pieces.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "runtime/conversions.h"
#include "store/recordset.h"

namespace merivane::store {

template <class Piece>
void AppendPiece(std::string& sql, const Piece& piece) {
  if constexpr (std::is_convertible_v<const Piece&, std::string_view>) {
    sql += std::string_view(piece);
  } else {
    sql += Joined(piece);
  }
}

// The statement joined from texts as they stand and from values, whose Null gives no text (and so
// may break the statement).
template <class... Pieces>
std::string SqlOf(const Pieces&... pieces) {
  constexpr std::size_t kUsualLength = 200;
  std::string sql;
  sql.reserve(kUsualLength);
  (AppendPiece(sql, pieces), ...);
  return sql;
}

// A dynamic set over that statement. Failures as of Recordset::OpenDynamic.
template <class... Pieces>
Recordset Ask(Connection* connection, const Pieces&... pieces) {
  Recordset rows;
  rows.OpenDynamic(SqlOf(pieces...), connection);
  return rows;
}

// A static one.
template <class... Pieces>
Recordset AskStatic(Connection* connection, const Pieces&... pieces) {
  Recordset rows;
  rows.OpenStatic(SqlOf(pieces...), connection);
  return rows;
}

}  // namespace merivane::store
