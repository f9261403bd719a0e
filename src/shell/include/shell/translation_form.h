// What the dialogs of both directions have: the model's text, the database that a run writes to,
// and what came of picking it and of the run behind OK.
//
//   frmIDEF3ToProject& form = main.modelToProject;
//   form.OnPick = [&](const PickNote& note) { line = note.text; };
//   if (!form.PickModel() || !form.PickDatabase()) return;
//   form.cmdOK();
//   if (form.GenerateResult == true) line = form.Result.text;
//
// Paths and the texts of results are UTF-8. The database that was picked is the connection of the
// direction's state, which outlives the form. Functions that are set here are called within the
// handlers, and may hold references to what outlives the form.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "program/program.h"
#include "runtime/run_time_error.h"
#include "shell/database_pick.h"
#include "shell/form.h"
#include "shell/kept_files.h"
#include "shell/modOptions.h"
#include "shell/run_result.h"

namespace merivane::shell {

using namespace program;

class TranslationForm : public Form {
 public:
  TextBox txtCelvarFilename;

  std::optional<RunTimeError> PickFailure;  // of the database picked last; nothing where it opened
  // Told after each pick of a database.
  std::function<void(const PickNote&)> OnPick;
  // Why no database to write to is open, UTF-8; empty where one is, or where none was picked.
  std::string WhyNotOpen() const;
  // Puts the old database back; the boxes that name it become empty. Errors of PutBackEmptied.
  void Undo(const EmptiedDatabase& emptied);

  // OK keeps what its run writes to (RunUntilCancelled), and the database as it was before a merge
  // stays beside it (".bak", ".bak2", ...), unless this is switched off, since the caller keeps
  // them. BackupName is the last copy, of a merge or of a pick that overwrote; empty without one.
  bool KeepBackup = true;
  std::string BackupName;
  // What a pick keeps of a database that it overwrites. Told behind that: the name of its copy,
  // empty where none stood there.
  Copy CopyOfReplaced = Copy::kBackup;
  std::function<void(const std::string& copy)> OnDatabaseReplaced;
  // Called before a run changes what a database holds, when nobody else can write to it any more.
  std::function<void()> OnDatabaseTaken;

  // Result of the last driver run of cmdOK; nothing where it was cancelled, or a check stopped it.
  std::optional<bool> GenerateResult;
  RunResult Result;  // of that run

 protected:
  // Of the database that a run writes to.
  struct Target {
    std::unique_ptr<Connection>& connection;
    std::vector<TextBox*> boxes;
  };

  TranslationForm(Workspace& workspace, Desktop& desktop, ApplicationPaths& paths, Target target)
      : desktop_(desktop), paths_(paths), workspace_(workspace), target_(std::move(target)) {}

  void Load() override;
  std::string OpenName() const;  // of that database; empty: none is open
  void TellPick(const std::string& open);
  void BrowseFor(TextBox& box, const FileDialog& dialog, const char* extension);
  bool Refuse(const char* text);  // False, behind a box

  DatabasePick pick_;
  bool refused_ = false;  // the database, when OK was pressed
  Desktop& desktop_;
  ApplicationPaths& paths_;

 private:
  Workspace& workspace_;
  Target target_;
};

}  // namespace merivane::shell
