#include "batch_desktop.h"

#include <utility>

#include "platform/system_settings.h"
#include "runtime/code_page.h"

namespace merivane::batch {

void ProgressLine::Show(const RunProgress& progress) {
  std::string line = ToUtf8(progress.stage);
  if (progress.done > 0) line += ": " + std::to_string(progress.done);
  if (progress.total > 0) line += " of " + std::to_string(progress.total);
  Clear();
  terminal_ << line << std::flush;
  shown_ = line.size();
}

void ProgressLine::Clear() {
  if (shown_ == 0) return;
  terminal_ << '\r' << std::string(shown_, ' ') << '\r' << std::flush;
  shown_ = 0;
}

BatchDesktop::BatchDesktop(const CommonOptions& common, std::string programFolder, MessageLog& log,
                           ProgressLine& line, bool showsProgress)
    : programFolder_(std::move(programFolder)),
      templateFile_(common.templateFile),
      today_(common.today.value_or(SystemToday())),
      codePage_(common.codePage.value_or(SystemOemCodePage())),
      log_(log),
      line_(line),
      showsProgress_(showsProgress) {}

MessageAnswer BatchDesktop::ShowMessage(const Message& message) {
  const MessageAnswer answer =
      message.buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kYes;
  lastMessage_ = message.text;
  line_.Clear();
  log_.AddMessage(message, answer);
  return answer;
}

std::string BatchDesktop::AskFileName(const FileDialog& /*dialog*/) {
  return std::exchange(picked_, {});
}

void BatchDesktop::ShowModal(ModalForm& form) {
  form.MarkLoaded();
  form.Load();
  if (answer_) answer_(form);
  form.Unload();
}

void BatchDesktop::ShowProgress(const RunProgress& progress) {
  if (showsProgress_) line_.Show(progress);
}

void BatchDesktop::EndProgress() {
  if (showsProgress_) line_.Clear();
}

std::string BatchDesktop::TemplatePath() const {
  return templateFile_.empty() ? Desktop::TemplatePath() : templateFile_;
}

}  // namespace merivane::batch
