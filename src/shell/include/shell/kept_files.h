// The files that stood before a run, kept until it is told how the run ended.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "runtime/text_files.h"
#include "store/connection.h"

namespace merivane::shell {

using namespace runtime;
using namespace store;

// Copies the database beside it under the first free name of ".bak", ".bak2", ... and gives the
// copy's name. Errors are those of CopyDatabase; nothing is left then.
std::string MakeBackup(Workspace& workspace, const std::string& path);

// Puts a copy of `from` in the place of `to`. Gives the name of the backup of what stood there,
// empty without one; none is left where the copy fails.
std::string ReplaceDatabase(Workspace& workspace, const std::string& from, const std::string& to,
                            bool keepBackup);

// One run: first Keep calls, then the run, then Finish or PutBack; dropping it puts back.
// REQUIRES of Finish, PutBack and the drop: no database and no text file of the run is open.
class KeptFiles {
 public:
  KeptFiles() = default;
  ~KeptFiles();
  KeptFiles(const KeptFiles&) = delete;
  KeptFiles& operator=(const KeptFiles&) = delete;

  enum class Copy {
    kBackup,     // stays beside the database when the run succeeds
    kUntilDone,  // goes then
  };
  // For a database that the run replaces or changes. Where it is changed, the run has taken it
  // (Connection::BeginWrite), so that what is put back is not what another process changed since.
  // Where none stands, nothing is copied.
  void KeepDatabase(Workspace& workspace, const std::string& path, Copy copy);

  // The name under which the run writes the file anew, beside the place that Finish moves it to.
  // A pipe or a device is written as it stands. Error 70 where a file stands there that may not be
  // written.
  std::string StandInFor(const std::string& path);
  // The same for a text that `files` opens.
  void KeepText(TextFiles& files, const std::string& path);

  // What was written stays. An error of a text that can't take its place comes up; PutBack may
  // still be called then.
  void Finish();

  // What stood before stands again, byte by byte; a database that did not keeps its rows, a text
  // that did not is not left. Gives a sentence for each database that can't be put back, with the
  // name of its copy, which stays.
  std::vector<std::string> PutBack() noexcept;

  // The backup of the database, empty without one. Before Finish or PutBack only.
  std::string BackupName() const;

 private:
  struct Database {
    std::string path;
    std::string copy;  // empty: the database did not stand before
    Copy kind;
  };
  struct NewPlace {
    std::filesystem::path place;
    std::filesystem::path standIn;
    std::filesystem::path old;  // a second name of what stood there; empty without one
    bool stood = false;
    bool moved = false;
  };
  void Prepare(NewPlace& made);

  std::vector<Database> databases_;
  std::vector<NewPlace> newFiles_;
};

}  // namespace merivane::shell
