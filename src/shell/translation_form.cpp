#include "shell/translation_form.h"

#include "program/error_boxes.h"
#include "shell/named_files.h"

namespace merivane::shell {

void TranslationForm::Load() {
  txtCelvarFilename = TextBox{};
  GenerateResult.reset();
  Result = {};
  BackupName.clear();
}

std::string TranslationForm::OpenName() const {
  const auto& connection = target_.connection;
  return connection && connection->IsOpen() ? connection->DatabaseName() : "";
}

std::string TranslationForm::WhyNotOpen() const {
  return OpenName().empty() ? pick_.Refusal() : "";
}

void TranslationForm::TellPick(const std::string& open) {
  if (PickFailure) pick_.Failed(*PickFailure);
  if (OnPick) OnPick(pick_.Note(open));
}

void TranslationForm::Undo(const EmptiedDatabase& emptied) {
  if (OpenName() == emptied.path) target_.connection.reset();
  for (TextBox* box : target_.boxes) {
    if (box->text == emptied.path) box->text.clear();
  }
  if (BackupName == emptied.backup) BackupName.clear();
  Changed();
  PutBackEmptied(workspace_, emptied);
}

void TranslationForm::BrowseFor(TextBox& box, const FileDialog& dialog, const char* extension) {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    if (auto name = BrowseForFile(desktop_, dialog, box.text, extension)) box = {.text = *name};
  } catch (const RunTimeError& error) {
    ReportError(desktop_, error);
  }
  Changed();
}

bool TranslationForm::Refuse(const char* text) {
  desktop_.ShowMessage({text});
  return false;
}

}  // namespace merivane::shell
