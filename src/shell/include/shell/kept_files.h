// The files that stood before a run, kept until it is told how the run ended.
//
//   KeptFiles kept;
//   kept.KeepDatabase(program.workspace, "plan.mdb", Copy::kUntilDone);
//   kept.NewOutput(program.files, "plan.mpx");
//   ...                  // the run: writes into the database, and beside plan.mpx
//   kept.Finish();       // all of it stays; without it all of it goes
#pragma once

#include <list>
#include <string>
#include <vector>

#include "runtime/new_file.h"
#include "runtime/text_files.h"
#include "store/connection.h"

namespace merivane::shell {

using namespace runtime;
using namespace store;

// What becomes of a database that a run replaces or changes.
enum class Copy {
  kBackup,     // its copy stays beside it when the run succeeds: ".bak", ".bak2", ...
  kUntilDone,  // goes then
  kNone,       // there is none, and nothing can be put back
};

// Puts a copy of `from` in the place of `to`. Gives the name of the copy of what stood there, empty
// without one; none is left where it fails. Nobody else can write to `to` in between.
std::string ReplaceDatabase(Workspace& workspace, const std::string& from, const std::string& to,
                            Copy copy);

// One run: first Keep calls, then the run, then Finish or PutBack; dropping it puts back.
// REQUIRES of Finish, PutBack and the drop: no text file of the run is open, save in Finish one
// that is flushed and written no more, and no database but those that are held. The workspace
// outlives it.
class KeptFiles {
 public:
  KeptFiles() = default;
  ~KeptFiles();
  KeptFiles(const KeptFiles&) = delete;
  KeptFiles& operator=(const KeptFiles&) = delete;

  // For a database that the run changes and has taken (Connection::BeginWrite): what it writes is
  // held until the end, and undone by the engine. Where another file stands there, a copy of it is
  // kept; where none stands, nothing.
  void KeepDatabase(Workspace& workspace, const std::string& path, Copy copy);

  // For a database in whose place the run has put a copy of `made`: `backup` is what
  // ReplaceDatabase gave.
  void KeepReplaced(Workspace& workspace, const std::string& path, const std::string& made,
                    const std::string& backup, Copy copy);

  // Where the run writes the file anew, until Finish moves it to its place; see NewFile.
  const Output& NewOutput(const std::string& name);
  // The same for one that `files` opens or tells the place of.
  const Output& NewOutput(TextFiles& files, const std::string& name);

  // Whether a text (UTF-8) names one of the outputs.
  bool NamesOutput(const std::string& text) const;

  // All that is written goes to the disk; what is left to fail in Finish is the last step of each.
  void Flush();

  // What was written stays. An error of a text that can't take its place comes up; PutBack may
  // still be called then.
  void Finish();

  // What stood before stands again, byte by byte; a database that did not keeps its rows, a text
  // that did not is not left. Gives a sentence for each database that can't be put back, or that
  // another program has changed since and that is left alone, with the name of its copy, which
  // stays.
  std::vector<std::string> PutBack() noexcept;

  // The backup of the database, empty without one. Before Finish or PutBack only.
  std::string BackupName() const;

 private:
  struct Database {
    std::string path;
    std::string copy = {};  // empty: none was made
    Copy kind = Copy::kNone;
    std::string made = {};  // what the run has put in its place; empty: it is held, or as copied
    bool held = false;
  };
  std::string Restore(const Database& database);

  Workspace* workspace_ = nullptr;  // of the databases
  std::vector<Database> databases_;
  std::list<NewFile> newFiles_;
};

}  // namespace merivane::shell
