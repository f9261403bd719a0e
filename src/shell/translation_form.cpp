#include "shell/translation_form.h"

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

bool TranslationForm::Refuse(const char* text) {
  desktop_.ShowMessage({text});
  return false;
}

}  // namespace merivane::shell
