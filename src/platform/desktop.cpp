#include "platform/desktop.h"

#include <chrono>

#include "platform/program_run.h"
#include "platform/quiet_desktop.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::platform {

bool Desktop::Breathe() { return !EndIsAsked(); }

std::int64_t Desktop::Ticks() const {
  using std::chrono::milliseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<milliseconds>(now).count();
}

std::vector<std::string> QuietDesktop::MessageTexts() const {
  std::vector<std::string> texts;
  for (const Message& box : boxes) texts.push_back(box.text);
  return texts;
}

void QuietDesktop::ThrowMachineFault() const {
  for (const Message& box : boxes) {
    const int number = box.error;
    // The engine's other errors come from what a statement was made of.
    if (number == kDatabaseError || !IsMachineFault(number)) continue;
    throw RunTimeError(number, Trim(box.text));
  }
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
