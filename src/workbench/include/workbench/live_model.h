// A model text that is translated over and over in memory, with another choice each time.
//
//   LiveModel model("model.txt", desktop);
//   FileView view = model.View();
//   model.Choose(view.choices.front().question, 1);
//   view = model.View();  // the plan of the other choice
#pragma once

#include <map>
#include <memory>
#include <string>

#include "inspect/check.h"
#include "pictures/scratch_model.h"
#include "platform/quiet_desktop.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

using namespace inspect;

// Nothing of the user's is touched, and a temporary database is gone with the object. The check
// stands beside the rest: where it fails, a line of the view says so.
class LiveModel {
 public:
  // Reads and checks. Progress is shown on `shown`, which outlives this and gives the template and
  // today; RunCancelled comes up from there. Errors: a text that can't be opened, no temporary
  // folder. A text that breaks off is shown as far as it goes, and a line tells where it ends.
  LiveModel(const std::string& textFile, Desktop& shown);

  // The answer to a question that a view held, an index of its names.
  void Choose(const std::string& question, std::size_t name) { answers_[question] = name; }

  // Translates with the choices made so far, otherwise with the first of each question, and gives
  // what is to be shown. A translation that fails is told in whyNoChart. RunCancelled as above.
  FileView View();

 private:
  struct Translation;
  void Read(const std::string& textFile);
  void Check(const std::string& textFile);
  void ReadPlan(Translation& translation, FileView& view) const;

  Desktop& shown_;
  QuietDesktop desktop_;
  Program program_{desktop_};
  std::unique_ptr<ScratchModel> scratch_;
  ProcessModel read_;  // as no translation has touched it
  CheckedModel check_;
  std::vector<std::string> lines_;
  std::map<std::string, std::size_t> answers_;  // by question
};

}  // namespace merivane::workbench
