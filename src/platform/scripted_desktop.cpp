#include "platform/scripted_desktop.h"

namespace merivane::platform {

namespace {

// The next answer of the queue; `otherwise` when none is left.
template <typename Answer>
Answer TakeAnswer(std::deque<Answer>& answers, Answer otherwise) {
  if (answers.empty()) return otherwise;
  Answer answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

}  // namespace

std::vector<std::string> ScriptedDesktop::MessageTexts() const {
  std::vector<std::string> texts;
  for (const auto& entry : shown) {
    if (const auto* box = std::get_if<ShownMessage>(&entry)) texts.push_back(box->message.text);
  }
  return texts;
}

void ScriptedDesktop::RecordChooser(Chooser chooser) {
  shown.emplace_back(chooser);
  if (onChooser) onChooser(chooser);
}

MessageAnswer ScriptedDesktop::ShowMessage(const Message& message) {
  const MessageAnswer answer = message.buttons == MessageButtons::kOk
                                   ? MessageAnswer::kOk
                                   : TakeAnswer(yesNoAnswers, MessageAnswer::kYes);
  const ShownMessage box{message, answer};
  shown.emplace_back(box);
  if (onMessage) onMessage(box);
  return answer;
}

std::string ScriptedDesktop::AskFileName(const FileDialog& dialog) {
  fileDialogs.push_back(dialog);
  return TakeAnswer(fileNames, std::string());
}

void ScriptedDesktop::ShowModal(ModalForm& form) {
  form.MarkLoaded();
  form.Load();
  if (modalHandler) modalHandler(form);
  form.Unload();
}

void ScriptedDesktop::ShowProgress(const RunProgress& progress) {
  if (onProgress) onProgress(progress);
}

void ScriptedDesktop::EndProgress() {
  if (onProgressEnd) onProgressEnd();
}

void ScriptedDesktop::ShowProgressOn(Desktop& shown) {
  onProgress = [&shown](const RunProgress& progress) { shown.ShowProgress(progress); };
  onProgressEnd = [&shown] { shown.EndProgress(); };
  onBreath = [&shown] { return shown.Breathe(); };
  clock = [&shown] { return shown.Ticks(); };
}

bool ScriptedDesktop::Breathe() { return !onBreath || onBreath(); }

std::string ScriptedDesktop::TemplatePath() const {
  return templatePath.empty() ? Desktop::TemplatePath() : templatePath;
}

std::int32_t ScriptedDesktop::OemCodePage() const {
  if (oemCodePageFailure) throw RunTimeError(*oemCodePageFailure);
  return oemCodePage;
}

std::optional<std::string> ScriptedDesktop::RegistryDefault(const std::string& key) const {
  const auto entry = registry.find(key);
  if (entry == registry.end()) return std::nullopt;
  return entry->second + '\0';
}

bool ScriptedDesktop::StartProgram(const std::string& commandLine) {
  startedCommands.push_back(commandLine);
  return startResult;
}

int ScriptedDesktop::OpenWebPage(const std::string& url) {
  openedPages.push_back(url);
  return webPageResult;
}

void ScriptedDesktop::ShowHelp(const std::string& helpFile, int command, int context) {
  helpCalls.push_back({helpFile, command, context});
}

std::string ScriptedDesktop::ProfileString(const std::string& section, const std::string& key,
                                           const std::string& fallback,
                                           const std::string& /*iniFile*/) const {
  const auto entry = profile.find({section, key});
  return entry == profile.end() ? fallback : entry->second;
}

}  // namespace merivane::platform
