#include "outline_tree.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "paint_figure.h"
#include "pictures/marks.h"
#include "pictures/style.h"
#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr int kElementRole = Qt::UserRole;

QString Caption(const Element& element) {
  QString name = ToQt(element.name);
  if (element.mark != Mark::kNone) name = ToQt(SignOf(element.mark)) + ' ' + name;
  if (element.kind == Element::Kind::kScenario) return name;
  return QString::number(element.number) + "  " + name;
}

QString ToolTipOf(const Element& element) {
  const char* kind = element.kind == Element::Kind::kScenario ? "Scenario "
                     : element.kind == Element::Kind::kUnit   ? "Unit "
                                                              : "Task ";
  const QString out = element.whyOut.empty() ? "" : ", not in the plan: " + ToQt(element.whyOut);
  return kind + Caption(element) + out;
}

}  // namespace

OutlineTree::OutlineTree() : search_(new QLineEdit), tree_(new QTreeWidget) {
  search_->setObjectName("outlineSearch");
  search_->setAccessibleName("Search the outline");
  search_->setPlaceholderText("Search (Ctrl+F)");
  search_->setClearButtonEnabled(true);
  tree_->setObjectName("outline");
  tree_->setAccessibleName("Outline");
  tree_->setHeaderHidden(true);
  tree_->setUniformRowHeights(true);
  tree_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  tree_->header()->setStretchLastSection(false);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->addWidget(search_);
  column->addWidget(tree_, 1);
  connect(search_, &QLineEdit::textChanged, this, [this] { FindFrom(0); });
  connect(search_, &QLineEdit::returnPressed, this, [this] { FindFrom(BehindChosen()); });
  connect(tree_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item != nullptr && OnChosen) OnChosen(item->data(0, kElementRole).toULongLong());
  });
}

void OutlineTree::Show(const std::vector<Element>& elements) {
  const QSignalBlocker silence(tree_);
  tree_->clear();
  items_.clear();
  std::vector<QTreeWidgetItem*> above;  // of each level
  QList<QTreeWidgetItem*> tops;
  for (const Element& element : elements) {
    above.resize(std::min(above.size(), element.level));
    auto* item = new QTreeWidgetItem({Caption(element)});
    item->setData(0, kElementRole, QVariant::fromValue<qulonglong>(items_.size()));
    item->setData(0, Qt::AccessibleTextRole, ToolTipOf(element));
    item->setToolTip(0, ToolTipOf(element));
    if (element.mark != Mark::kNone) {
      item->setForeground(0, QColor(StyleOf(InkOf(element.mark), GroundOf(palette())).stroke));
    } else if (!element.whyOut.empty()) {
      item->setForeground(0, tree_->palette().brush(QPalette::PlaceholderText));
      QFont font = tree_->font();
      font.setItalic(true);
      item->setFont(0, font);
    }
    if (above.empty()) {
      tops.append(item);
    } else {
      above.back()->addChild(item);
    }
    above.push_back(item);
    items_.push_back(item);
  }
  tree_->addTopLevelItems(tops);
  tree_->expandAll();
}

void OutlineTree::Choose(std::size_t element) {
  const QSignalBlocker silence(tree_);
  tree_->setCurrentItem(items_.at(element));
  tree_->scrollToItem(items_[element]);
}

std::size_t OutlineTree::BehindChosen() const {
  const QTreeWidgetItem* chosen = tree_->currentItem();
  return chosen == nullptr ? 0 : chosen->data(0, kElementRole).toULongLong() + 1;
}

void OutlineTree::FindFrom(std::size_t element) {
  const QString text = search_->text();
  if (text.isEmpty() || items_.empty()) return;
  for (std::size_t step = 0; step < items_.size(); ++step) {
    QTreeWidgetItem* item = items_[(element + step) % items_.size()];
    if (!item->text(0).contains(text, Qt::CaseInsensitive)) continue;
    tree_->setCurrentItem(item);
    return;
  }
}

ElementPage::ElementPage() {
  setObjectName("properties");
  setAccessibleName("Properties");
  setOpenLinks(false);
  setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl&) {
    if (OnOpen) OnOpen(line_);
  });
}

void ElementPage::Show(const Element& element) {
  line_ = element.line;
  QString rows;
  for (const Property& property : element.properties) {
    const QString text = ToQt(property.text).toHtmlEscaped().replace('\n', "<br>");
    rows += QString("<tr><th align='left'>%1&nbsp;</th><td>%2</td></tr>")
                .arg(ToQt(property.name).toHtmlEscaped(), text);
  }
  if (line_ > 0) rows += "<tr><td></td><td><a href='open'>Open the text there</a></td></tr>";
  setHtml("<table cellpadding='2'>" + rows + "</table>");
}

}  // namespace merivane::desktop
