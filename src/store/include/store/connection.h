// A connection to one database file, and the workspace that knows all connections of a program.
// Statements go in as the program writes them, rows come out through record sets (recordset.h,
// ask.h).
//
//   Workspace workspace;
//   Connection connection(workspace);
//   connection.Open(ConnectionText("plan.mdb"));
//   Recordset tasks = Ask(&connection, "select TASK_NAME from MSP_TASKS where PROJ_ID = 1");
//   for (; !tasks.Eof(); tasks.MoveNext()) names.push_back(Joined(tasks.Field("TASK_NAME")));
//
// Paths are UTF-8, texts of rows Windows-1252 (save under Utf8Texts). Numbers stand in the units of
// their tables; a field without a value is Null. Every failure is a RunTimeError, and what it left
// unwritten stays unwritten: a transaction is committed whole or not at all. The caller owns the
// workspace, its connections and their record sets; a set that outlives its connection is closed.
// One thread uses a workspace.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/work_listener.h"

namespace merivane::store {

class Connection;
class Engine;
class Recordset;

// "Driver={Microsoft Access Driver (*.mdb)};DBQ=" and the path: the text a connection opens with.
std::string ConnectionText(const std::string& path);

enum class OpenMode {
  kReadWrite,
  kReadOnly,  // the file is never changed, and no journal is made beside it
  kCopy,      // likewise; what is written goes to a copy in memory, which ends with the connection
              // and serves the rows of one project: no index tells them from others
  kAside,     // likewise, and nothing is copied before it is written: until the connection ends the
              // file is held for reading
};

// Knows the open connections of one program, so that a transaction is committed before another
// connection opens the same file or a copy of it is made. Must outlive its connections.
class Workspace {
 public:
  // Without the engine's locks between threads, which cost a twentieth of a run. Called before the
  // first workspace is made, by a program in which nothing else uses SQLite and one thread runs.
  static void LeaveOutLocks();

  Workspace();
  ~Workspace();
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  // Told while statements run or wait for another process, files are copied and Access files are
  // loaded. Set before the first connection is opened.
  WorkListener* work = &nobody_;

  // How long to wait for another process that holds a file, each time. Set as above.
  std::chrono::milliseconds patience{3000};

  // Commits what every connection has written so far. For the end of a handler (errors come up) ...
  void CommitAll();
  // ... and for the end of the program on any path.
  void CommitAllQuietly() noexcept;

  // Puts a plain copy of `from` in the place of `to`: made beside `to`, then renamed over it, with
  // a stale journal of `to` removed. `from` may be a database in use here. The copy is on the disk
  // to its last byte before it takes that place. Errors: 53 `from` is not there, 70 `to` is refused
  // or one of them is in use by another process, 57 or 61 the disk; `to` is as it was then.
  void CopyDatabase(const std::string& from, const std::string& to);

  // The same, and before it the copy of what stands at `to` in the file `backup`, unless that is
  // empty: nobody can write to `to` in between. `copied` is called once the copy is whole, while
  // `to` still stands as it was; what it throws ends the call there.
  void ReplaceDatabase(const std::string& from, const std::string& to, const std::string& backup,
                       const std::function<void()>& copied);

  // Moves the file `copy` back over the database `to`, which is open nowhere here, if `to` is gone
  // or still the file that this workspace put there, byte by byte the file `made`: False, with
  // nothing done, where somebody has changed or replaced it since. With an empty `made` whatever
  // stands there gives way. Errors as above.
  bool PutBack(const std::string& copy, const std::string& to, const std::string& made);

  // What the connection on `path` writes, which has begun (Connection::BeginWrite), stays open from
  // now on, whoever commits or closes; a connection that is opened on the file goes on in it.
  // False, with nothing done, where there is none. One database at a time.
  bool Hold(const std::string& path);
  // Opens `connection` on a copy of the database `path` (OpenMode::kAside), in which every
  // connection that is opened on that path goes on, until DropHeld or the workspace's end.
  void HoldCopy(Connection& connection, const std::string& path);
  void FlushHeld();          // what is left to fail behind this is the commit
  void KeepHeld();           // commits
  void DropHeld() noexcept;  // undoes all that was written since it began

 private:
  friend class Connection;
  struct State;
  WorkListener nobody_;
  std::unique_ptr<State> state_;
};

// The file must be there and be a database (SQLite, or a real Access file, which opens read-only
// whatever the mode); anything else is a RunTimeError with a description that names the file.
// One transaction runs from the first write until Commit, Close or the end of the object.
class Connection {
 public:
  explicit Connection(Workspace& workspace);
  // Opened on the file.
  Connection(Workspace& workspace, const std::string& path, OpenMode mode) : Connection(workspace) {
    Open(ConnectionText(path), mode);
  }
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void Open(const std::string& connectionText, OpenMode mode = OpenMode::kReadWrite);
  void Close();  // commits; record sets still open on it are closed
  bool IsOpen() const;
  void Commit();

  // Begins the transaction before anything is written, so that what is read from now on is what the
  // file holds until Commit. Waits some seconds for another process that writes, then error 70;
  // 3251 where the file is open for reading only.
  void BeginWrite();
  // Changes when another connection or process has changed the file, and at no other time.
  std::int64_t Version();
  // Grows where what this connection had written since the last Commit is undone.
  std::uint64_t Undone() const;

  // Looks at every page and row, which takes time in step with the file: what is damaged, in the
  // engine's words, a hundred at most; nothing in a sound database.
  std::vector<std::string> FindDamage();

  // The path given to Open; stays readable after Close.
  const std::string& DatabaseName() const { return databaseName_; }

  // The rows of schema code 20 (adSchemaTables): one row a table with the column TABLE_NAME.
  // The record set is static and belongs to the caller.
  void OpenSchema(int schema, Recordset& tables);

 private:
  friend class Recordset;
  friend class Workspace;
  friend class ReadScope;
  Workspace& workspace_;
  std::string databaseName_;
  std::shared_ptr<Engine> engine_;
};

// While this lives, everything that is read through the connection comes from one state of the
// file, which is locked once and not for each statement. Without a connection, or where a
// transaction runs already, it does nothing. REQUIRES: nothing is written through the connection
// meanwhile.
class ReadScope {
 public:
  explicit ReadScope(const Connection* connection);
  ~ReadScope();
  ReadScope(const ReadScope&) = delete;
  ReadScope& operator=(const ReadScope&) = delete;

 private:
  std::shared_ptr<Engine> engine_;  // null where nothing is to be ended
};

// While one lives, the texts that are read on this thread come in UTF-8, as the file has them, and
// not in Windows-1252: for what writes UTF-8 itself, so that no letter is lost. Malformed sequences
// come as they are.
class Utf8Texts {
 public:
  Utf8Texts();
  ~Utf8Texts();
  Utf8Texts(const Utf8Texts&) = delete;
  Utf8Texts& operator=(const Utf8Texts&) = delete;
};

inline constexpr int adSchemaTables = 20;

}  // namespace merivane::store
