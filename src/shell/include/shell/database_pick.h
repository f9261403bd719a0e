// What came of a database that the user picked: a line for the window, a cause for the boxes of a
// run that finds no database open, the way back from a database that the pick has emptied, and the
// projects for a combo box.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "runtime/run_time_error.h"
#include "shell/form.h"
#include "store/connection.h"

namespace merivane::shell {

using namespace runtime;
using namespace store;

// A database that a pick has replaced with an empty one.
struct EmptiedDatabase {
  std::string path;
  std::string backup;  // what stood there
};

struct PickNote {
  std::string text;  // UTF-8; empty where a pick went as it should
  std::optional<EmptiedDatabase> emptied;
};

class DatabasePick {
 public:
  void Begin(const std::string& path) { *this = DatabasePick(path); }
  // `backup` as ReplaceDatabase gives it; empty: nothing stood there.
  void Replaced(const std::string& backup) {
    replaced_ = true;
    backup_ = backup;
  }
  void Failed(const RunTimeError& error) { failure_ = error; }

  // `open`: the database that is open now; empty: none.
  PickNote Note(const std::string& open) const;
  // "plan.mdb can't be used: Disk full.", UTF-8; empty where it can be.
  std::string Refusal() const;

  DatabasePick() = default;

 private:
  explicit DatabasePick(std::string path) : path_(std::move(path)) {}

  std::string path_;
  std::string backup_;
  bool replaced_ = false;
  std::optional<RunTimeError> failure_;
};

// Renames the backup back. Error 70 where another process uses the database, or where it holds a
// project again, and 53 without the backup; nothing has changed then.
// REQUIRES: the database is open nowhere here.
void PutBackEmptied(Workspace& workspace, const EmptiedDatabase& emptied);

// Fills the combo with PROJ_NAME and PROJ_ID of each project. True when the database has a project
// and the first task's outline number isn't Null; otherwise a box tells why. A database error
// yields False without a box, and is kept in `failure`.
bool LoadProjectList(Desktop& desktop, Connection* connection, ComboBox& combo,
                     std::optional<RunTimeError>& failure);

}  // namespace merivane::shell
