#include "sqlite_handle.h"

#include <cstring>
#include <new>

#include "hardening.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "store/connection.h"

namespace merivane::store {

namespace {

bool IsAscii(const char* text, std::size_t size) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  for (; size >= sizeof(std::uint64_t); text += sizeof(std::uint64_t)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text, sizeof eight);
    if ((eight & kHighBits) != 0) return false;
    size -= sizeof eight;
  }
  for (; size > 0; --size, ++text) {
    if ((static_cast<unsigned char>(*text) & 0x80U) != 0) return false;
  }
  return true;
}

void Check(sqlite3_stmt* statement, int result) {
  if (result == SQLITE_OK) return;
  sqlite3* database = sqlite3_db_handle(statement);
  const char* path = sqlite3_db_filename(database, "main");
  throw DatabaseError(database, path == nullptr ? "" : path);
}

void BindText(sqlite3_stmt* statement, int parameter, const std::string& text) {
  int result = SQLITE_OK;
  if (IsAscii(text.data(), text.size())) {
    result = sqlite3_bind_text64(statement, parameter, text.data(), text.size(), SQLITE_STATIC,
                                 SQLITE_UTF8);
  } else {
    const std::string utf8 = ToUtf8(text);
    result = sqlite3_bind_text64(statement, parameter, utf8.data(), utf8.size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8);
  }
  Check(statement, result);
}

void ThrowIfOutOfMemory(sqlite3* database) {
  if ((sqlite3_errcode(database) & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
}

// A value that is there comes without bytes only where memory ran out.
void CheckBytes(sqlite3_stmt* statement, const void* bytes) {
  if (bytes == nullptr) ThrowIfOutOfMemory(sqlite3_db_handle(statement));
}

thread_local int utf8Readers = 0;

std::string FromColumn(const char* utf8, std::size_t size) {
  if (utf8Readers > 0 || IsAscii(utf8, size)) return {utf8, size};
  return FromUtf8({utf8, size});
}

}  // namespace

Utf8Texts::Utf8Texts() { ++utf8Readers; }

Utf8Texts::~Utf8Texts() { --utf8Readers; }

bool HasMoved(sqlite3* database) {
  int moved = 0;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

RunTimeError InUseError(const std::string& path) {
  return {kPermissionDenied, ErrorText(kPermissionDenied) + ": the database '" + FromUtf8(path) +
                                 "' is in use by another program."};
}

RunTimeError DatabaseError(sqlite3* database, const std::string& path, int result) {
  ThrowIfOutOfMemory(database);
  const std::string file = "'" + FromUtf8(path) + "'";
  switch ((result == SQLITE_OK ? sqlite3_errcode(database) : result) & 0xFF) {
    case SQLITE_NOMEM:
      throw std::bad_alloc();
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return InUseError(path);
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
      return RunTimeError(kPermissionDenied);
    case SQLITE_FULL:
      return FileError(kDiskFull, path);
    case SQLITE_IOERR:
      return FileError(kDeviceIoError, path);
    case SQLITE_TOOBIG:
      return TooLongError(database, file);
    case SQLITE_INTERRUPT:
      return {kDatabaseError, "The file " + file + " is damaged: reading it never ends."};
    case SQLITE_READONLY:
      return {kNotUpdatable, "The database " + file + " is open for reading only."};
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return {kDatabaseError, "The file " + file + " is damaged or no database."};
    default:
      return {kDatabaseError,
              "The database " + file + " reports: " + FromUtf8(sqlite3_errmsg(database)) + "."};
  }
}

StatementHandle PrepareStatement(sqlite3* database, const std::string& sql,
                                 const std::string& path) {
  sqlite3_stmt* statement = nullptr;
  const int result = sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (result == SQLITE_ERROR) {
    ThrowIfOutOfMemory(database);
    throw RunTimeError(kStatementError, FromUtf8(sqlite3_errmsg(database)));
  }
  if (result != SQLITE_OK) throw DatabaseError(database, path);
  return StatementHandle(statement);
}

void Execute(sqlite3* database, const char* sql, const std::string& path) {
  if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw DatabaseError(database, path);
  }
}

void Bind(sqlite3_stmt* statement, int parameter, const Literal& literal) {
  if (const auto* integer = std::get_if<std::int64_t>(&literal)) {
    sqlite3_bind_int64(statement, parameter, *integer);
  } else if (const auto* real = std::get_if<double>(&literal)) {
    sqlite3_bind_double(statement, parameter, *real);
  } else {
    const auto& text = std::get<std::string>(literal);
    Check(statement, sqlite3_bind_text64(statement, parameter, text.data(), text.size(),
                                         SQLITE_STATIC, SQLITE_UTF8));
  }
}

void Bind(sqlite3_stmt* statement, int parameter, const Value& value) {
  if (value.IsText()) {
    BindText(statement, parameter, value.Text());
  } else if (value.IsInteger()) {
    sqlite3_bind_int64(statement, parameter, value.Integer());
  } else if (value.IsReal()) {
    sqlite3_bind_double(statement, parameter, value.Real());
  } else if (value.IsNull()) {
    sqlite3_bind_null(statement, parameter);
  } else if (value.GetBytes().empty()) {
    sqlite3_bind_zeroblob(statement, parameter, 0);
  } else {
    const Bytes& bytes = value.GetBytes();
    Check(statement,
          sqlite3_bind_blob64(statement, parameter, bytes.data(), bytes.size(), SQLITE_STATIC));
  }
}

std::string ColumnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  CheckBytes(statement, text);
  if (text == nullptr) return {};
  return FromColumn(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

std::string Utf8ColumnText(sqlite3_stmt* statement, int column) {
  const Utf8Texts unchanged;
  return ColumnText(statement, column);
}

Value ColumnValue(sqlite3_stmt* statement, int column, ReadAs as) {
  return ColumnValue(statement, column, sqlite3_column_value(statement, column), as);
}

Value ColumnValue(sqlite3_stmt* statement, int column, sqlite3_value* value, ReadAs as) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER: {
      const auto number = static_cast<std::int64_t>(sqlite3_value_int64(value));
      return as == ReadAs::kText ? Value(ToText(number)) : Value(number);
    }
    case SQLITE_FLOAT: {
      const double number = sqlite3_column_double(statement, column);
      return as == ReadAs::kText ? Value(TextOfReal(number)) : Value(number);
    }
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement, column));
      CheckBytes(statement, bytes);
      if (bytes == nullptr) return Bytes();
      return Bytes(bytes, bytes + sqlite3_column_bytes(statement, column));
    }
    default:
      return ColumnText(statement, column);
  }
}

bool ColumnHolds(sqlite3_stmt* statement, int column, const Value& value) {
  sqlite3_value* held = sqlite3_column_value(statement, column);
  switch (sqlite3_value_type(held)) {
    case SQLITE_NULL:
      return value.IsNull();
    case SQLITE_INTEGER:
      return value.IsInteger() && value.Integer() == sqlite3_value_int64(held);
    case SQLITE_TEXT:
      return value.IsText() && value.Text() == ColumnText(statement, column);
    default:
      return value == ColumnValue(statement, column, ReadAs::kStored);
  }
}

std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (const char character : name) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

}  // namespace merivane::store
