// One field of an Access row as a column value of SQLite.
#pragma once

#include <glib.h>  // first: its templates must not stand inside the extern "C" of the next
#include <mdbtools.h>
#include <sqlite3.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace merivane::store {

// A value that the file doesn't hold as its definition tells.
class DamagedValue : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class AccessFields {
 public:
  // `fileSize` bounds what a chain of pages can hold.
  AccessFields(MdbHandle* mdb, std::size_t fileSize) : mdb_(mdb), fileSize_(fileSize) {}

  // The type that a SQLite column of these values is declared with.
  static const char* DeclaredType(const MdbColumn& column);

  // Binds the field of the row that `mdb` stands on to parameter `index` of a statement without
  // bindings. Throws DamagedValue.
  void Bind(const MdbColumn& column, const MdbField& field, sqlite3_stmt* insert, int index);

 private:
  void BindNumber(const MdbColumn& column, const MdbField& field, sqlite3_stmt* insert, int index);
  std::string Text(std::string_view bytes);
  std::string LongValue(std::string_view pointer);

  MdbHandle* mdb_;
  std::size_t fileSize_;
};

}  // namespace merivane::store
