#include "platform/quiet_desktop.h"

namespace merivane::platform {

std::vector<std::string> QuietDesktop::MessageTexts() const {
  std::vector<std::string> texts;
  for (const Message& box : boxes) texts.push_back(box.text);
  return texts;
}

MessageAnswer QuietDesktop::ShowMessage(const Message& message) {
  boxes.push_back(message);
  if (onMessage) onMessage(message);
  return message.buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kYes;
}

void QuietDesktop::ShowModal(ModalForm& form) {
  form.MarkLoaded();
  form.Load();
  if (onModalForm) onModalForm(form);
  form.Unload();
}

void QuietDesktop::ShowProgress(const RunProgress& progress) {
  if (user_) user_->ShowProgress(progress);
}

void QuietDesktop::EndProgress() {
  if (user_) user_->EndProgress();
}

std::string QuietDesktop::TemplatePath() const {
  return templatePath.empty() ? Desktop::TemplatePath() : templatePath;
}

}  // namespace merivane::platform
