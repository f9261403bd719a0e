#include "message_log.h"

#include <functional>
#include <nlohmann/json.hpp>

#include "printable.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "shell/run_result.h"

namespace merivane::batch {

using namespace shell;

namespace {

using Json = nlohmann::ordered_json;

const char* NameOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kCritical:
      return "critical";
    case MessageIcon::kExclamation:
      return "exclamation";
    case MessageIcon::kNone:
      break;
  }
  return "none";
}

const char* NameOf(MessageAnswer answer) {
  switch (answer) {
    case MessageAnswer::kYes:
      return "yes";
    case MessageAnswer::kNo:
      return "no";
    case MessageAnswer::kOk:
      break;
  }
  return "ok";
}

std::string TitleOf(const Message& message) {
  return ToUtf8(message.title.empty() ? kApplicationTitle : message.title);
}

// On one readable paragraph: line breaks become line feeds, the last one goes.
std::string Readable(std::string text) {
  std::erase(text, '\r');
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return PrintableText(ToUtf8(text));
}

// Whether the file could be written.
bool Survives(const std::function<void()>& write) {
  try {
    write();
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace

bool MessageLog::OpenFile(const std::string& path) {
  isWhole_ = Survives([&] { file_.emplace(path); });
  return isWhole_;
}

void MessageLog::AddLine(const std::string& line) {
  const bool isWritten = Survives([&] {
    file_->Write(line + '\n');
    file_->Flush();
  });
  isWhole_ = isWhole_ && isWritten;
}

void MessageLog::AddMessage(const Message& message, MessageAnswer answer) {
  ++messages_;
  machineFault_ |= IsMachineFault(message.error);
  if (readable_) {
    *readable_ << TitleOf(message);
    if (message.icon != MessageIcon::kNone) *readable_ << " (" << NameOf(message.icon) << ")";
    *readable_ << ": " << Readable(message.text);
    if (message.buttons == MessageButtons::kYesNo) *readable_ << " [" << NameOf(answer) << "]";
    *readable_ << '\n';
    const std::string advice =
        message.advice.empty() ? shell::MessageAdvice(message.error) : message.advice;
    if (!advice.empty()) *readable_ << "  " << advice << '\n';
    *readable_ << std::flush;
  }
  if (!file_) return;
  const Json line = {{"text", ToUtf8(message.text)},
                     {"title", TitleOf(message)},
                     {"icon", NameOf(message.icon)},
                     {"buttons", message.buttons == MessageButtons::kYesNo ? "yesno" : "ok"},
                     {"answer", NameOf(answer)}};
  AddLine(line.dump());
}

void MessageLog::AddChooser(const std::string& label1, const std::string& label2,
                            const std::vector<std::string>& items,
                            const std::optional<std::string>& answer) {
  if (!file_) return;
  Json names = Json::array();
  for (const std::string& item : items) names.push_back(ToUtf8(item));
  const Json chooser = {{"label1", ToUtf8(label1)},
                        {"label2", ToUtf8(label2)},
                        {"items", names},
                        {"answer", answer ? Json(ToUtf8(*answer)) : Json(nullptr)}};
  AddLine(Json{{"chooser", chooser}}.dump());
}

}  // namespace merivane::batch
