#include "desktop/qt_desktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QTimer>
#include <QUrl>

#include "desktop/help_window.h"
#include "help_context.h"
#include "modal_dialogs.h"
#include "platform/program_run.h"
#include "platform/system_settings.h"
#include "progress_dialog.h"
#include "qt_text.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "shell/form.h"
#include "shell/kept_files.h"
#include "shell/modal_forms.h"
#include "shell/named_files.h"
#include "shell/run_result.h"

namespace merivane::desktop {

using namespace shell;

namespace {

// A frame's title stands between an icon and the frame's buttons, in a bold font, and may be
// centred. A box that is no wider than its text would cut it.
void LeaveRoomForTitle(QMessageBox& box) {
  QFont bold = box.font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  const int width = metrics.horizontalAdvance(box.windowTitle()) + 8 * metrics.height();
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

// What a screen has no room for stands below, with a bar to move it.
void SetWholeText(QMessageBox& box, const QString& text) {
  constexpr qsizetype kMostLetters = 1500;
  constexpr qsizetype kMostLines = 20;
  const QString start = text.section('\n', 0, kMostLines - 1).left(kMostLetters);
  if (start.size() == text.size()) {
    box.setText(text);
    return;
  }
  box.setText(start + QString::fromUtf8("…\n(The whole text stands behind \"Show Details\".)"));
  box.setDetailedText(text);
}

}  // namespace

// A nested event loop under way: the wait pointer gives way to the normal one meanwhile.
class QtDesktop::Wait {
 public:
  Wait(QtDesktop& desktop, std::function<void()> leave) : desktop_(desktop) {
    desktop_.waits_.push_back(std::move(leave));
    desktop_.ApplyPointer();
  }
  ~Wait() {
    desktop_.waits_.pop_back();
    desktop_.ApplyPointer();
  }
  Wait(const Wait&) = delete;
  Wait& operator=(const Wait&) = delete;

 private:
  QtDesktop& desktop_;
};

QtDesktop::QtDesktop(FileNames& fileNames) : fileNames_(fileNames) {}

QtDesktop::~QtDesktop() { SetMousePointer(kPointerDefault); }

void QtDesktop::Run(const std::function<void()>& handler) {
  if (ended_ || breathing_) return;
  const QScopedValueRollback<std::string> about(about_, {});
  try {
    RunReported(handler);
    if (!endsBehindRun_) return;
  } catch (const ProgramEnd&) {
  }
  End();
}

bool QtDesktop::AskInRun() {
  if (!progress_) return breathing_;
  const Message question{"Merivane is at work. Do you want to cancel that and end the program?",
                         MessageIcon::kExclamation,
                         {},
                         MessageButtons::kYesNo};
  if (ShowMessage(question) == MessageAnswer::kYes) {
    endsBehindRun_ = true;
    progress_->reject();
  }
  return true;
}

void QtDesktop::EndUnasked() {
  if (!breathing_) return End();
  endsBehindRun_ = undoesRun_ = true;
}

void QtDesktop::RunReported(const std::function<void()>& handler) try {
  handler();
} catch (const RunTimeError& error) {
  ShowMessage({error.Description()});
} catch (const std::exception& error) {
  ShowMessage({FromUtf8(error.what())});
}

void QtDesktop::RunIn(QWidget& window, const std::function<void()>& handler) {
  const QScopedValueRollback<QPointer<QWidget>> caller(caller_, &window);
  Run(handler);
}

void QtDesktop::Run(const Form& form, const std::function<void()>& handler) {
  if (form.IsVisible()) Run(handler);
}

void QtDesktop::RunWithFileName(const Form& form, const std::string& name,
                                const std::function<void()>& handler) {
  RememberName(name);
  givenName_ = name;
  Run(form, handler);
  givenName_.reset();
}

bool QtDesktop::WasPicked(const std::string& name) const {
  return !name.empty() && name == Trim(about_);
}

void QtDesktop::RememberName(const std::string& name) { fileNames_.Remember(PathToQt(name)); }

void QtDesktop::End() {
  if (ended_) return;
  ended_ = true;
  const auto waits = waits_;
  for (auto leave = waits.rbegin(); leave != waits.rend(); ++leave) (*leave)();
  if (OnEnd) OnEnd();
}

QWidget* QtDesktop::Parent() const {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr) return modal;
  if (progress_) return progress_.get();
  return caller_ ? caller_.data() : window_;
}

// Modal to the program's windows only, so that the help window stays usable beside it.
void QtDesktop::Execute(QDialog& dialog) {
  dialog.setWindowModality(Qt::WindowModal);
  {
    const Wait wait(*this, [&dialog] { dialog.reject(); });
    dialog.exec();
  }
  if (ended_) EndProgram();
}

QString QtDesktop::AdviceOn(const Message& message) const {
  const bool notOpen = message.error == kObjectNotSet || message.error == kConnectionInvalid;
  const bool known = notOpen && !whyNotOpen_.empty();
  QString advice =
      known ? PathToQt(whyNotOpen_)
            : ToQt(message.advice.empty() ? MessageAdvice(message.error) : message.advice);
  if (!message.endsProgram) return advice;
  if (!advice.isEmpty()) advice += ' ';
  return advice + (known ? "Merivane ends here; nothing was changed."
                         : "Merivane ends here; what was written so far stays.");
}

MessageAnswer QtDesktop::ShowMessage(const Message& message) {
  QMessageBox box(Parent());
  box.setTextFormat(Qt::PlainText);
  box.setWindowTitle(message.title.empty() ? QString::fromLatin1(kApplicationTitle)
                                           : ToQt(message.title));
  SetWholeText(box, BreakableText(ToQt(message.text)));
  const QString advice = AdviceOn(message);
  box.setInformativeText(BreakableText(advice));
  if (message.icon == MessageIcon::kCritical) box.setIcon(QMessageBox::Critical);
  if (message.icon == MessageIcon::kExclamation) box.setIcon(QMessageBox::Warning);
  const bool asks = message.buttons == MessageButtons::kYesNo;
  box.setStandardButtons(asks ? QMessageBox::Yes | QMessageBox::No
                              : QMessageBox::StandardButtons(QMessageBox::Ok));
  for (QAbstractButton* button : box.buttons()) button->setIcon({});
  LeaveRoomForTitle(box);
  if (!asks) ++messageCount_;
  const QDateTime time = QDateTime::currentDateTime();
  Execute(box);
  const MessageAnswer answer = !asks                              ? MessageAnswer::kOk
                               : box.result() == QMessageBox::Yes ? MessageAnswer::kYes
                                                                  : MessageAnswer::kNo;
  log_.AddBox(time, message, answer, PathToQt(about_), advice);
  return answer;
}

void QtDesktop::LogResult(const QString& text, const QString& file) {
  log_.AddResult(text, file.isEmpty() ? PathToQt(about_) : file);
}

void QtDesktop::Beep() { QApplication::beep(); }

std::string QtDesktop::AskFileName(const FileDialog& dialog) {
  if (givenName_) {
    std::string name = *givenName_;
    givenName_.reset();
    return about_ = name;
  }
  QString name;
  {
    const Wait wait(*this, [] {});
    name = fileNames_.Ask(dialog, Parent());
  }
  if (ended_) EndProgram();
  return about_ = name.toStdString();
}

void QtDesktop::SetMousePointer(int pointer) {
  pointer_ = pointer;
  ApplyPointer();
}

// A short run is over before anyone could read how far it is.
void QtDesktop::ShowProgress(const RunProgress& progress) {
  constexpr std::int64_t kShortRun = 400;
  if (!progressSince_) progressSince_ = Ticks();
  if (!progress_) {
    if (Ticks() - *progressSince_ < kShortRun) return;
    progress_ = std::make_unique<ProgressDialog>(Parent());
    progress_->show();
  }
  progress_->Draw(progress);
}

void QtDesktop::EndProgress() {
  progress_.reset();
  progressSince_.reset();
}

// Input waits until the dialog that takes it is there.
bool QtDesktop::Breathe() {
  constexpr int kMostMilliseconds = 20;
  const QScopedValueRollback<bool> breathing(breathing_, true);
  QApplication::processEvents(
      progress_ ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents, kMostMilliseconds);
  if (ended_) EndProgram();
  return !undoesRun_ && (!progress_ || !progress_->IsCancelled());
}

void QtDesktop::ApplyPointer() {
  const bool busy = pointer_ == kPointerHourglass || pointer_ == kPointerArrowHourglass;
  if (busy && waits_.empty()) {
    const Qt::CursorShape shape = pointer_ == kPointerHourglass ? Qt::WaitCursor : Qt::BusyCursor;
    if (pointerShown_) {
      QApplication::changeOverrideCursor(shape);
    } else {
      QApplication::setOverrideCursor(shape);
    }
    pointerShown_ = true;
  } else if (pointerShown_) {
    QApplication::restoreOverrideCursor();
    pointerShown_ = false;
  }
}

void QtDesktop::ShowModal(ModalForm& form) {
  form.MarkLoaded();
  form.Load();
  auto* merge = dynamic_cast<frmDBMerge*>(&form);
  if (merge != nullptr && readyMerge_) {
    merge->MergeWith(*readyMerge_);
    return;
  }
  const auto dialog = MakeModalDialog(form, *this, Parent());
  Execute(*dialog);
  form.Unload();
}

std::string QtDesktop::TakeReadyChoice(const std::string& question) {
  const auto entry = readyChoices_.extract(question);
  return entry.empty() ? "" : entry.mapped();
}

void QtDesktop::Sleep(int milliseconds) {
  QEventLoop loop;
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);  // a coarse one may be early
  QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
  timer.start(milliseconds);
  {
    const Wait wait(*this, [&loop] { loop.quit(); });
    loop.exec(QEventLoop::ExcludeUserInputEvents);
  }
  if (ended_) EndProgram();
}

std::string QtDesktop::AppPath() const {
  return QCoreApplication::applicationDirPath().toStdString();
}

DateTime QtDesktop::Today() const { return SystemToday(); }

std::int32_t QtDesktop::OemCodePage() const { return SystemOemCodePage(); }

std::optional<std::string> QtDesktop::RegistryDefault(const std::string& key) const {
  return ReadClassDefault(key);
}

bool QtDesktop::StartProgram(const std::string& commandLine) { return StartDetached(commandLine); }

int QtDesktop::OpenWebPage(const std::string& url) {
  return OpenInBrowser(url,
                       [] { QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); });
}

bool QtDesktop::WriteAnew(const std::string& path,
                          const std::function<void(const Output& output)>& write) {
  const Message question{FromUtf8(path) + " exists. Do you want to replace it?",
                         MessageIcon::kExclamation,
                         {},
                         MessageButtons::kYesNo};
  if (FileIsThere(path) && ShowMessage(question) != MessageAnswer::kYes) return false;
  KeptFiles kept;
  try {
    write(kept.NewOutput(path));
    kept.Finish();
    return true;
  } catch (const RunTimeError& error) {
    if (kept.NamesOutput(ToUtf8(error.Description()))) throw;
    throw RunTimeError(error.Number(), FromUtf8(path) + ": " + error.Description());
  }
}

void QtDesktop::OpenPlace(const QString& path) {
  const QString place = QFileInfo(path).absoluteFilePath();
  const std::string address = QUrl::fromLocalFile(place).toEncoded().toStdString();
  if (OpenWebPage(address) >= kLowestSuccess) return;
  ShowMessage({"No program could be started to open " + FromUtf8(path.toStdString())});
}

void QtDesktop::RequestHelp(const QWidget* widget) {
  const HelpTarget target = HelpTargetOf(widget);
  Run([&] {
    if (!target.file.isEmpty()) {
      ShowHelp(target.file.toStdString(), kHelpContext, target.context);
    } else if (OnHelpRequest) {
      OnHelpRequest(target.context);
    }
  });
}

void QtDesktop::ShowHelp(const std::string& helpFile, int command, int context) {
  if (!help_) help_ = std::make_unique<HelpWindow>();
  if (!help_->Open(PathToQt(helpFile))) {
    ShowMessage({"Cannot open the help file: " + FromUtf8(helpFile), MessageIcon::kExclamation});
    return;
  }
  if (command == kHelpContext) {
    help_->ShowContext(context);
  } else if (command == kHelpIndex) {
    help_->ShowIndex();
  } else {
    help_->ShowContents();
  }
}

std::string QtDesktop::ProfileString(const std::string& section, const std::string& key,
                                     const std::string& fallback,
                                     const std::string& iniFile) const {
  return ReadProfileString(section, key, fallback, iniFile);
}

}  // namespace merivane::desktop
