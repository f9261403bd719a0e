#include "desktop/help_window.h"

#include <QAction>
#include <QHeaderView>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QStyle>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "help_file.h"
#include "platform/program_run.h"
#include "program_picture.h"
#include "user_settings.h"

namespace merivane::desktop {

using namespace platform;

namespace {

constexpr const char* kScheme = "help";
constexpr int kMargin = 40;  // around a picture, pixels

// Pages take the window's colours, so that they can be read on a dark palette too.
constexpr const char* kStyleSheet =
    "h1 { font-size: x-large; } h2 { font-size: large; } h3 { font-size: medium; }"
    "th { text-align: left; } td, th { padding: 3px 10px 3px 0; vertical-align: top; }"
    "code, pre, tt, kbd { font-family: monospace; }";

constexpr int kTopicRole = Qt::UserRole;

template <typename Item>
QString TopicOf(const Item* item, int column) {
  return item->data(column, kTopicRole).toString();
}

}  // namespace

// Shows the pages of a help file.
class TopicBrowser : public QTextBrowser {
 public:
  explicit TopicBrowser(QWidget* parent = nullptr) : QTextBrowser(parent) {}

  // Null: nothing to show. Must outlive its use here.
  void SetFile(const HelpFile* file) { file_ = file; }
  void ShowTopic(const QString& topic);
  // Name of the page that an address shows.
  static QString TopicOf(const QUrl& address) { return address.path().mid(1); }

  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  QVariant Picture(const QByteArray& bytes) const;

  const HelpFile* file_ = nullptr;
};

void TopicBrowser::ShowTopic(const QString& topic) {
  setSource(QUrl(QLatin1String(kScheme) + QStringLiteral(":/") + topic));
}

void TopicBrowser::doSetSource(const QUrl& name, QTextDocument::ResourceType type) {
  if (name.scheme().startsWith(QLatin1String("http"))) {
    (void)OpenInBrowser(name.toString().toStdString());
    return;
  }
  QTextBrowser::doSetSource(name, type);
}

QVariant TopicBrowser::loadResource(int type, const QUrl& name) {
  if (type == QTextDocument::StyleSheetResource) return QLatin1String(kStyleSheet);
  const auto bytes = file_ != nullptr ? file_->Read(name.path()) : std::nullopt;
  if (!bytes) {
    return type == QTextDocument::HtmlResource
               ? QVariant(QStringLiteral("<p>This topic is not in the help file.</p>"))
               : QVariant();
  }
  if (type == QTextDocument::ImageResource) return Picture(*bytes);
  return *bytes;
}

QVariant TopicBrowser::Picture(const QByteArray& bytes) const {
  QImage image = QImage::fromData(bytes);
  const qreal scale = devicePixelRatioF();
  const int room = static_cast<int>((viewport()->width() - kMargin) * scale);
  if (image.width() > room && room > 0) image = image.scaledToWidth(room, Qt::SmoothTransformation);
  image.setDevicePixelRatio(scale);
  return image;
}

HelpWindow::HelpWindow()
    : tabs_(new QTabWidget),
      contents_(new QTreeWidget),
      indexText_(new QLineEdit),
      index_(new QListWidget),
      browser_(new TopicBrowser) {
  setObjectName("helpWindow");
  setWindowIcon(ApplicationIcon());
  contents_->setObjectName("helpContents");
  contents_->setAccessibleName("Contents");
  contents_->setHeaderHidden(true);
  contents_->header()->setStretchLastSection(false);  // a long name is moved to, not cut
  contents_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  browser_->setObjectName("helpTopic");
  browser_->setAccessibleName("Topic");
  tabs_->setObjectName("helpTabs");
  tabs_->addTab(contents_, "&Contents");
  tabs_->addTab(MakeIndexPage(), "&Index");
  auto* splitter = new QSplitter;
  splitter->addWidget(tabs_);
  splitter->addWidget(browser_);
  splitter->setStretchFactor(1, 1);
  const int character = fontMetrics().averageCharWidth();
  splitter->setSizes({character * 34, character * 86});
  setCentralWidget(splitter);
  new WindowPlace(*this, {character * 120, fontMetrics().height() * 38});
  AddTools();
  connect(contents_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item != nullptr) ShowTopic(TopicOf(item, 0));
  });
  connect(browser_, &QTextBrowser::sourceChanged, this,
          [this](const QUrl& page) { MarkTopic(TopicBrowser::TopicOf(page)); });
}

HelpWindow::~HelpWindow() { browser_->SetFile(nullptr); }

void HelpWindow::AddTools() {
  QToolBar* tools = addToolBar("Topics");
  tools->setMovable(false);
  const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize);
  tools->setIconSize({icon, icon});
  tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  const auto add = [&](const char* text, QStyle::StandardPixmap picture, const QKeySequence& keys) {
    QAction* action = tools->addAction(style()->standardIcon(picture), text);
    action->setShortcut(keys);
    return action;
  };
  QAction* back = add("Back", QStyle::SP_ArrowBack, QKeySequence::Back);
  QAction* forward = add("Forward", QStyle::SP_ArrowForward, QKeySequence::Forward);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
  connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
}

QWidget* HelpWindow::MakeIndexPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  indexText_->setObjectName("helpIndexText");
  indexText_->setAccessibleName("Look for an index entry");
  indexText_->setPlaceholderText("Look for");
  indexText_->setClearButtonEnabled(true);
  index_->setObjectName("helpIndex");
  index_->setAccessibleName("Index");
  column->addWidget(indexText_);
  column->addWidget(index_);
  connect(indexText_, &QLineEdit::textChanged, this, &HelpWindow::FilterIndex);
  connect(index_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
    if (item != nullptr) ShowTopic(item->data(kTopicRole).toString());
  });
  return page;
}

bool HelpWindow::Open(const QString& path) {
  if (file_ && path == path_) return true;
  auto file = HelpFile::Open(path);
  if (!file) return false;
  browser_->SetFile(file.get());
  file_ = std::move(file);
  path_ = path;
  Fill();
  return true;
}

void HelpWindow::Fill() {
  const QSignalBlocker quietContents(contents_);
  const QSignalBlocker quietIndex(index_);
  setWindowTitle(file_->Title().isEmpty() ? QStringLiteral("Help") : file_->Title());
  contents_->clear();
  std::vector<QTreeWidgetItem*> parents;  // the last item of each level so far
  for (const HelpEntry& entry : file_->Contents()) {
    const auto level = qMin(static_cast<std::size_t>(entry.level), parents.size());
    parents.resize(level);
    auto* item = level == 0 ? new QTreeWidgetItem(contents_) : new QTreeWidgetItem(parents.back());
    item->setText(0, entry.name);
    item->setData(0, kTopicRole, entry.topic);
    parents.push_back(item);
  }
  contents_->expandAll();
  index_->clear();
  for (const HelpEntry& entry : file_->Index()) {
    auto* item = new QListWidgetItem(entry.name, index_);
    item->setData(kTopicRole, entry.topic);
  }
  index_->sortItems();
}

void HelpWindow::FilterIndex(const QString& text) {
  for (int row = 0; row < index_->count(); ++row) {
    QListWidgetItem* item = index_->item(row);
    item->setHidden(!item->text().contains(text, Qt::CaseInsensitive));
  }
}

void HelpWindow::ShowTopic(const QString& topic) {
  if (!topic.isEmpty()) browser_->ShowTopic(topic);
}

void HelpWindow::MarkTopic(const QString& topic) {
  const QSignalBlocker quiet(contents_);
  // A page that belongs to a context number may be a copy of the one in the contents.
  const auto page = file_->Read(topic);
  for (QTreeWidgetItemIterator item(contents_); *item != nullptr; ++item) {
    if (file_->Read(TopicOf(*item, 0).section('#', 0, 0)) != page) continue;
    contents_->setCurrentItem(*item);
    return;
  }
  contents_->setCurrentItem(nullptr);
}

void HelpWindow::ShowContents() {
  tabs_->setCurrentWidget(contents_);
  ShowTopic(file_->DefaultTopic());
  BringToFront();
  contents_->setFocus();
}

void HelpWindow::ShowIndex() {
  tabs_->setCurrentWidget(index_->parentWidget());
  if (Topic().isEmpty()) ShowTopic(file_->DefaultTopic());
  BringToFront();
  indexText_->setFocus();
}

void HelpWindow::ShowContext(int context) {
  ShowTopic(file_->TopicOf(context).value_or(file_->DefaultTopic()));
  BringToFront();
  browser_->setFocus();
}

QString HelpWindow::Topic() const { return TopicBrowser::TopicOf(browser_->source()); }

void HelpWindow::BringToFront() {
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

}  // namespace merivane::desktop
