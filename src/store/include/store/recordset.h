// Record sets over a connection, with the cursor behaviour that the translator relies on.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"

namespace merivane::store {

using namespace runtime;

class Connection;

enum CursorType { adOpenForwardOnly = 0, adOpenDynamic = 2, adOpenStatic = 3 };

// A dynamic set is a key list with live values: edits through other sets show, rows deleted since
// are skipped, rows added through this set stand at its end (after Update of an added row the
// position is the one before AddNew, and MoveNext reaches the added row). A static set is a
// snapshot. Without ORDER BY rows come in order of insertion; with it equal keys keep that order.
//
// Open checks the statement and reads nothing; a question for BOF or EOF, and MoveLast, cost one
// row on a fresh set without ORDER BY. Before a write through the connection that could change what
// a set hasn't read yet, it reads its rest; any other write, such as a row added behind a set
// without ORDER BY, only ends its walk, and the rest is read when it is wanted.
//
// Names ignore case. Every failure is a RunTimeError with the usual description: 91 no connection,
// 3709 a closed connection, 3704 a closed set, 3705 an open set opened again, 3021 no current
// record (an empty set, BOF or EOF, a row deleted since), 3265 no such column, 3251 a set that
// can't be written, 13 or 6 a value that the column's type refuses, and the three statement errors.
class Recordset {
 public:
  Recordset();
  ~Recordset();
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;

  // `connection` null is error 91. Where a column is worked out ("Max(Num) as Max_ID"), OpenDynamic
  // gives a snapshot too, which can't be written.
  void OpenDynamic(std::string_view sql, Connection* connection);
  void OpenStatic(std::string_view sql, Connection* connection);

  // Reopening with the earlier cursor kind (dynamic for a set that was never open).
  void Source(std::string_view sql);
  void ActiveConnection(Connection* connection);
  void Open();

  void Close();
  bool IsOpen() const;

  bool Eof();
  bool Bof();
  void MoveFirst();
  void MoveLast();
  bool FindLast();      // the same; false, and at BOF and EOF, without a row
  void MoveNext();      // saves a changed row first; at EOF error 3021
  void MovePrevious();  // likewise; at BOF error 3021

  // The current row (error 3021 without one), and the way back to it from anywhere in the set,
  // which saves a changed row first. A bookmark holds until the set is closed.
  std::size_t Bookmark();
  void MoveTo(std::size_t bookmark);

  long RecordCount();  // exact for a static set; -1 for a dynamic one

  int FieldCount();
  std::string FieldName(int index);      // as the table declares it
  int FindField(std::string_view name);  // ignoring case; -1 where there is none
  Value Field(std::string_view name);
  Value Field(int index);                    // from 0
  void ReadRow(std::vector<Value>& fields);  // all of the current row, as it is stored

  // A changed field waits for Update (or for the next move). Assigning converts to the column's
  // type: whole numbers round half to even into 32 bits (16 where the column says so).
  void SetField(std::string_view name, Value value);
  void AddNew();
  void AddNew(const std::vector<std::string>& names, std::vector<Value> values);  // saved
  void Update();
  void Delete();  // the current row; MoveNext goes to the one behind it

 private:
  friend class Connection;
  // A static set of texts that no table holds.
  void OpenList(std::string fieldName, std::vector<std::string> texts, Connection* connection);

  struct Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace merivane::store
