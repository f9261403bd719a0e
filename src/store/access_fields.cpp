#include "access_fields.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

#include "runtime/dates.h"

namespace merivane::store {

using namespace runtime;

namespace {

constexpr int kBigInteger = 0x13;  // of Access 2016, unknown to the library

constexpr std::uint32_t kInline = 0x80000000;      // a long value that follows its own pointer
constexpr std::uint32_t kSinglePage = 0x40000000;  // one row of another page
constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;  // otherwise a chain of rows
constexpr int kRowOffsetMask = 0x1FFF;

template <class Number>
Number Fixed(std::string_view bytes) {
  if (bytes.size() < sizeof(Number)) throw DamagedValue("a number is cut short");
  Number number;
  std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

// A single shows up to nine digits of its own, not those of the double beside it.
double AsShown(float number) {
  if (!std::isfinite(number)) return number;
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  double shown = 0;
  std::from_chars(digits, end, shown);
  return shown;
}

// Days since 12/30/1899, the time of day counting forward on either side; none outside of the years
// 100 to 9999.
std::optional<std::string> DateText(double serial) {
  if (!(serial > -657435 && serial < 2958466)) return std::nullopt;
  const double whole = std::trunc(serial);
  int day = static_cast<int>(whole);
  int seconds = static_cast<int>(std::lround(std::fabs(serial - whole) * 86400));
  if (seconds == 86400) {
    ++day;
    seconds = 0;
  }
  using namespace std::chrono;
  const year_month_day date = sys_days{1899y / December / 30} + days{day};
  return FormatDate({.year = static_cast<int>(date.year()),
                     .month = static_cast<int>(static_cast<unsigned>(date.month())),
                     .day = static_cast<int>(static_cast<unsigned>(date.day())),
                     .seconds = seconds});
}

std::string GuidText(std::string_view bytes) {
  if (bytes.size() < 16) throw DamagedValue("an identifier is cut short");
  static constexpr int kOrder[] = {3,  2, 1, 0,  -1, 5,  4,  -1, 7,  6,
                                   -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "{";
  for (const int at : kOrder) {
    if (at < 0) {
      text += '-';
      continue;
    }
    const auto byte = static_cast<unsigned char>(bytes[static_cast<std::size_t>(at)]);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text + "}";
}

void BindText(sqlite3_stmt* insert, int index, std::string_view text) {
  sqlite3_bind_text64(insert, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void BindBytes(sqlite3_stmt* insert, int index, std::string_view bytes) {
  sqlite3_bind_blob64(insert, index, bytes.empty() ? "" : bytes.data(), bytes.size(),
                      SQLITE_TRANSIENT);
}

std::string_view BytesOf(const MdbField& field) {
  if (field.value == nullptr || field.siz <= 0) return {};
  return {static_cast<const char*>(field.value), static_cast<std::size_t>(field.siz)};
}

}  // namespace

const char* AccessFields::DeclaredType(const MdbColumn& column) {
  switch (column.col_type) {
    case MDB_BOOL:
    case MDB_BYTE:
    case MDB_INT:
      return "SMALLINT";
    case MDB_LONGINT:
    case MDB_COMPLEX:
    case kBigInteger:
      return "INTEGER";
    case MDB_MONEY:
    case MDB_FLOAT:
    case MDB_DOUBLE:
    case MDB_NUMERIC:
      return "DOUBLE";
    case MDB_DATETIME:
    case MDB_TEXT:
    case MDB_REPID:
      return "TEXT COLLATE NOCASE";
    case MDB_MEMO:
      return "LONGTEXT COLLATE NOCASE";
    default:
      return "BLOB";
  }
}

void AccessFields::Bind(const MdbColumn& column, const MdbField& field, sqlite3_stmt* insert,
                        int index) {
  if (column.col_type == MDB_BOOL) {  // the row's Null mark is the value
    sqlite3_bind_int(insert, index, field.is_null != 0 ? 0 : -1);
    return;
  }
  if (field.is_null != 0) return;
  const std::string_view bytes = BytesOf(field);
  switch (column.col_type) {
    case MDB_DATETIME:
      if (const auto text = DateText(Fixed<double>(bytes))) BindText(insert, index, *text);
      break;
    case MDB_TEXT:
      BindText(insert, index, Text(bytes));
      break;
    case MDB_MEMO:
      BindText(insert, index, Text(LongValue(bytes)));
      break;
    case MDB_REPID:
      BindText(insert, index, GuidText(bytes));
      break;
    case MDB_OLE:
      BindBytes(insert, index, LongValue(bytes));
      break;
    default:
      BindNumber(column, field, insert, index);
  }
}

void AccessFields::BindNumber(const MdbColumn& column, const MdbField& field, sqlite3_stmt* insert,
                              int index) {
  const std::string_view bytes = BytesOf(field);
  switch (column.col_type) {
    case MDB_BYTE:
      sqlite3_bind_int(insert, index, Fixed<std::uint8_t>(bytes));
      break;
    case MDB_INT:
      sqlite3_bind_int(insert, index, Fixed<std::int16_t>(bytes));
      break;
    case MDB_LONGINT:
    case MDB_COMPLEX:
      sqlite3_bind_int(insert, index, Fixed<std::int32_t>(bytes));
      break;
    case kBigInteger:
      sqlite3_bind_int64(insert, index, Fixed<std::int64_t>(bytes));
      break;
    case MDB_MONEY: {  // ten-thousandths
      const auto amount = static_cast<long double>(Fixed<std::int64_t>(bytes)) / 10000;
      sqlite3_bind_double(insert, index, static_cast<double>(amount));
      break;
    }
    case MDB_FLOAT:
      sqlite3_bind_double(insert, index, AsShown(Fixed<float>(bytes)));
      break;
    case MDB_DOUBLE:
      sqlite3_bind_double(insert, index, Fixed<double>(bytes));
      break;
    case MDB_NUMERIC: {
      const std::unique_ptr<char, decltype(&g_free)> text(
          mdb_numeric_to_string(mdb_, field.start, column.col_scale, column.col_prec), g_free);
      const std::string_view digits = text ? text.get() : "";
      double number = 0;
      std::from_chars(digits.data(), digits.data() + digits.size(), number);
      sqlite3_bind_double(insert, index, number);
      break;
    }
    default:
      BindBytes(insert, index, bytes);
  }
}

std::string AccessFields::Text(std::string_view bytes) {
  if (mdb_->f->jet_version != MDB_VER_JET3 && bytes.size() % 2 != 0 &&
      !bytes.starts_with("\xFF\xFE"))
    bytes.remove_suffix(1);  // the library reads two bytes a character, without looking for the end
  if (bytes.empty()) return {};
  std::string text(bytes.size() * 4 + 8, '\0');
  const int length = mdb_unicode2ascii(mdb_, bytes.data(), bytes.size(), text.data(), text.size());
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

std::string AccessFields::LongValue(std::string_view pointer) {
  if (pointer.size() < MDB_MEMO_OVERHEAD) return {};
  const auto head = Fixed<std::uint32_t>(pointer);
  const std::size_t size = head & kLengthMask;
  if ((head & kInline) != 0) return std::string(pointer.substr(MDB_MEMO_OVERHEAD, size));
  auto next = Fixed<std::uint32_t>(pointer.substr(4));
  std::string value;
  while (next != 0 && value.size() < size) {
    void* page = nullptr;
    int offset = 0;
    std::size_t length = 0;
    if (mdb_find_pg_row(mdb_, static_cast<int>(next), &page, &offset, &length) != 0)
      throw DamagedValue("a long value leads nowhere");
    std::string_view row(static_cast<const char*>(page) + (offset & kRowOffsetMask), length);
    next = 0;
    if ((head & kSinglePage) == 0) {
      next = Fixed<std::uint32_t>(row);
      row.remove_prefix(sizeof next);
    }
    value += row;
    if (value.size() > fileSize_) throw DamagedValue("a long value never ends");
  }
  value.resize(std::min(value.size(), size));
  return value;
}

}  // namespace merivane::store
