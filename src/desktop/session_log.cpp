#include "desktop/session_log.h"

#include "qt_text.h"

namespace merivane::desktop {

namespace {

SessionLog::Kind KindOf(const Message& message) {
  if (message.buttons == MessageButtons::kYesNo) return SessionLog::Kind::kQuestion;
  if (message.icon == MessageIcon::kCritical) return SessionLog::Kind::kError;
  if (message.icon == MessageIcon::kExclamation) return SessionLog::Kind::kWarning;
  return SessionLog::Kind::kMessage;
}

}  // namespace

void SessionLog::AddBox(const QDateTime& time, const Message& message, MessageAnswer answer,
                        const QString& file, const QString& advice) {
  Entry entry{time, KindOf(message), file, ToQt(message.text).simplified(), advice};
  if (entry.kind == Kind::kQuestion) {
    entry.text += answer == MessageAnswer::kYes ? " Answer: Yes." : " Answer: No.";
  }
  Add(std::move(entry));
}

void SessionLog::AddResult(const QString& text, const QString& file) {
  if (!text.isEmpty()) Add({QDateTime::currentDateTime(), Kind::kResult, file, text, {}});
}

void SessionLog::Add(Entry entry) {
  entries_.push_back(std::move(entry));
  if (OnAdd) OnAdd(entries_.back());
}

}  // namespace merivane::desktop
