#include "start_page.h"

#include <QCommandLinkButton>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

#include "form_window.h"
#include "recent_list.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "shell/kept_files.h"

namespace merivane::desktop {

namespace {

// Sets off the heading of a group, also for a screen reader, which reads it as the name of what
// stands below.
QLabel* Heading(const char* text, QWidget* of) {
  auto* heading = new QLabel(text);
  QFont font = heading->font();
  font.setPointSizeF(font.pointSizeF() * 1.25);
  font.setBold(true);
  heading->setFont(font);
  heading->setBuddy(of);
  return heading;
}

}  // namespace

// A dashed frame that lights up while a file hangs over it.
class DropPlace : public QLabel {
 public:
  DropPlace() : QLabel("Drop a model or a plan here") {
    setObjectName("dropPlace");
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMinimumHeight(fontMetrics().height() * 5);
  }
  void SetLit(bool lit) {
    lit_ = lit;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor line = palette().color(lit_ ? QPalette::Highlight : QPalette::PlaceholderText);
    painter.setPen(QPen(line, lit_ ? 2 : 1, Qt::DashLine));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 6, 6);
    painter.end();
    QLabel::paintEvent(event);
  }

 private:
  bool lit_ = false;
};

StartPage::StartPage(const QString& samples, const QString& documents)
    : documents_(documents), dropPlace_(new DropPlace), recent_(new RecentList) {
  setObjectName("startPage");
  setAccessibleName("Start");
  setFocusPolicy(Qt::ClickFocus);
  viewport()->setAcceptDrops(true);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  recent_->OnOpen = [this](const QString& name) { OnOpen({name}); };
  auto* page = new QWidget;
  auto* row = new QHBoxLayout(page);
  const int margin = fontMetrics().height() * 3 / 2;
  row->setContentsMargins(margin, margin, margin, margin);
  row->setSpacing(margin);
  row->addWidget(MakeBeginnings(), 2);
  row->addWidget(MakeFiles(samples), 3);
  setWidget(page);
}

QCommandLinkButton* StartPage::AddButton(QVBoxLayout& column, const char* name, const char* caption,
                                         const char* sentence, const std::function<void()>& press) {
  auto* button = new QCommandLinkButton(caption, sentence);
  button->setObjectName(name);
  button->setAccessibleName(QString(caption).remove('&'));
  button->setAccessibleDescription(sentence);
  connect(button, &QPushButton::clicked, this, press);
  column.addWidget(button);
  return button;
}

QWidget* StartPage::MakeBeginnings() {
  auto* group = new QWidget;
  auto* column = new QVBoxLayout(group);
  column->setContentsMargins(0, 0, 0, 0);
  QCommandLinkButton* toPlan =
      AddButton(*column, "startToPlan", "Model to plan",
                "Make a plan for Microsoft Project of a process model.", [this] { OnToPlan(); });
  AddButton(*column, "startToModel", "Plan to model",
            "Make a model of a plan, or bring a changed plan back into its model.",
            [this] { OnToModel(); });
  column->insertWidget(0, Heading("Translate", toPlan));
  QCommandLinkButton* open =
      AddButton(*column, "startOpen", "Open a model or a plan…",
                "Look at a model, a project database, an MPX file or planning XML (Ctrl+O).",
                [this] { OnAsk(); });
  column->insertWidget(3, Heading("Look", open));
  column->addWidget(dropPlace_);
  column->addStretch();
  return group;
}

QWidget* StartPage::MakeFiles(const QString& samples) {
  auto* group = new QWidget;
  auto* column = new QVBoxLayout(group);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(Heading("Last files", recent_));
  column->addWidget(recent_, 3);
  QStringList names;
  const QDir folder(samples);
  for (const QString& name : folder.entryList({"*.txt"}, QDir::Files, QDir::Name)) {
    names += folder.absoluteFilePath(name);
  }
  if (names.isEmpty()) return group;
  QListWidget* list = MakeSamples(names);
  column->addWidget(Heading("Samples", list));
  column->addWidget(list, 1);
  return group;
}

QListWidget* StartPage::MakeSamples(const QStringList& names) {
  constexpr int kShownRows = 4;
  auto* list = new QListWidget;
  list->setObjectName("samples");
  list->setAccessibleName("Samples");
  for (const QString& name : names) {
    auto* item = new QListWidgetItem(QFileInfo(name).fileName(), list);
    item->setToolTip(QDir::toNativeSeparators(name));
    item->setData(Qt::UserRole, name);
  }
  list->setMinimumHeight(list->fontMetrics().height() * kShownRows);
  connect(list, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    OnOpen({OwnSample(item->data(Qt::UserRole).toString())});
  });
  return list;
}

// What the user has made of an earlier copy stays.
QString StartPage::OwnSample(const QString& name) const {
  if (MayBeReplaced(name.toStdString())) return name;
  QString copy = QDir(documents_).filePath(QFileInfo(name).fileName());
  if (QFile::exists(copy)) return copy;
  QFile sample(name);
  if (!QDir().mkpath(documents_) || !sample.open(QIODevice::ReadOnly)) return name;
  try {
    KeptFiles kept;
    WriteOutput(kept.NewOutput(copy.toStdString()), sample.readAll().toStdString());
    kept.Finish();
    return copy;
  } catch (const RunTimeError&) {
    return name;
  }
}

void StartPage::dragEnterEvent(QDragEnterEvent* event) {
  if (DroppedFiles(*event).isEmpty()) return;
  event->acceptProposedAction();
  dropPlace_->SetLit(true);
}

void StartPage::dragLeaveEvent(QDragLeaveEvent* /*event*/) { dropPlace_->SetLit(false); }

// Later, so that the program that the file comes from needn't wait for questions asked here.
void StartPage::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  dropPlace_->SetLit(false);
  QTimer::singleShot(0, this, [this, files = DroppedFiles(*event)] { OnOpen(files); });
}

}  // namespace merivane::desktop
