#include "picture_view.h"

#include <QApplication>
#include <QGraphicsItem>
#include <QStyleOptionGraphicsItem>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "paint_figure.h"
#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr double kSmallest = 0.02;
constexpr double kLargest = 8;
constexpr double kLeastAtFirst = 0.5;  // a picture that would be smaller is shown from its top left
constexpr double kReadable = 0.25;     // below it texts are left out

}  // namespace

class FigureItem : public QGraphicsItem {
 public:
  explicit FigureItem(const pictures::Figure& figure) : figure_(figure), bounds_(BoundsOf(figure)) {
    const QString title = ToQt(figure.title);
    if (!title.isEmpty()) {
      // Rich text wraps long lines.
      setToolTip("<p>" + title.toHtmlEscaped().replace('\n', "<br>") + "</p>");
    }
  }

  const pictures::Figure& Shown() const { return figure_; }
  QString Headline() const { return ToQt(figure_.title).section('\n', 0, 0); }
  void SetMarked(bool marked) {
    marked_ = marked;
    update();
  }

  QRectF boundingRect() const override { return bounds_.adjusted(-kMark, -kMark, kMark, kMark); }
  QPainterPath shape() const override {
    QPainterPath path;
    path.addRect(bounds_);
    return path;
  }
  void paint(QPainter* painter, const QStyleOptionGraphicsItem* /*option*/,
             QWidget* widget) override {
    const double scale =
        QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    const pictures::Ground ground =
        widget == nullptr ? pictures::Ground::kLight : GroundOf(widget->palette());
    PaintFigure(*painter, figure_, ground,
                scale >= kReadable ? FigureTexts::kShown : FigureTexts::kLeftOut);
    if (!marked_) return;
    QPen pen(QColor(0xe0, 0x8a, 0x00), 3);
    pen.setCosmetic(true);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(bounds_.adjusted(-3, -3, 3, 3), 4, 4);
  }

 private:
  static constexpr double kMark = 8;
  const pictures::Figure& figure_;
  QRectF bounds_;
  bool marked_ = false;
};

PictureView::PictureView(pictures::Picture picture, WorkListener& work) {
  setObjectName("picture");
  setLayoutDirection(Qt::LeftToRight);  // time runs so in a picture
  setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  setDragMode(ScrollHandDrag);
  setTransformationAnchor(AnchorUnderMouse);
  setScene(&scene_);
  Draw(std::move(picture), work);
}

void PictureView::Draw(pictures::Picture picture, WorkListener& work) {
  scene_.clear();
  items_.clear();
  marked_ = nullptr;
  picture_ = std::move(picture);
  setAccessibleName(ToQt(picture_.title));
  TellMarked();
  const QRectF sheet(0, 0, picture_.width, picture_.height);
  sheet_ = scene_.addRect(sheet, Qt::NoPen);
  TakeColours();
  for (const pictures::Figure& figure : picture_.figures) {
    work.Beat();
    items_.push_back(new FigureItem(figure));
    scene_.addItem(items_.back());
  }
  scene_.setSceneRect(sheet);
  if (shown_) FitAtFirst();
}

void PictureView::TakeColours() {
  setBackgroundBrush(palette().brush(QPalette::Mid));
  if (sheet_ == nullptr) return;
  sheet_->setBrush(QColor(pictures::StyleOf(Ink::kGround, GroundOf(palette())).fill));
  scene_.update();
}

void PictureView::changeEvent(QEvent* event) {
  QGraphicsView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) TakeColours();
}

void PictureView::ZoomTo(double scale) {
  const double wanted = std::clamp(scale, kSmallest, kLargest);
  QGraphicsView::scale(wanted / Scale(), wanted / Scale());
  if (OnZoom) OnZoom();
}

void PictureView::ZoomBy(double factor) { ZoomTo(Scale() * factor); }

void PictureView::Fit() {
  const QSizeF room = viewport()->size();
  ZoomTo(std::min({1.0, room.width() / picture_.width, room.height() / picture_.height}));
  centerOn(sceneRect().center());
}

void PictureView::showEvent(QShowEvent* event) {
  QGraphicsView::showEvent(event);
  if (shown_) return;
  shown_ = true;
  FitAtFirst();
}

void PictureView::FitAtFirst() {
  Fit();
  if (Scale() >= kLeastAtFirst) return;
  ZoomTo(1);
  centerOn(0, 0);
}

void PictureView::wheelEvent(QWheelEvent* event) {
  constexpr double kFactorOfNotch = 1.2;
  constexpr double kNotch = 120;
  if ((event->modifiers() & Qt::ControlModifier) == 0) {
    QGraphicsView::wheelEvent(event);
    return;
  }
  ZoomBy(std::pow(kFactorOfNotch, event->angleDelta().y() / kNotch));
  event->accept();
}

void PictureView::SetMarked(FigureItem* item) {
  if (marked_ != nullptr) marked_->SetMarked(false);
  marked_ = item;
  TellMarked();
  if (item == nullptr) return;
  item->SetMarked(true);
  if (Scale() < kReadable) ZoomTo(1);
}

// To a screen reader.
void PictureView::TellMarked() {
  const QString chosen = marked_ == nullptr ? "" : "Chosen: " + Marked() + "\n";
  setAccessibleDescription(chosen + ToQt(picture_.description));
}

FigureItem* PictureView::Find(const std::string& id) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](FigureItem* item) { return item->Shown().id == id; });
  return id.empty() || found == items_.end() ? nullptr : *found;
}

bool PictureView::Choose(const std::string& id) {
  SetMarked(Find(id));
  if (marked_ != nullptr) ensureVisible(marked_->sceneBoundingRect());
  return marked_ != nullptr;
}

QString PictureView::Marked() const { return marked_ == nullptr ? QString() : marked_->Headline(); }

FigureItem* PictureView::FigureAt(const QMouseEvent& event) const {
  return dynamic_cast<FigureItem*>(itemAt(event.position().toPoint()));
}

// Its second release is no click: another figure may lie there by then.
void PictureView::mouseDoubleClickEvent(QMouseEvent* event) {
  pressed_.reset();
  const FigureItem* item = FigureAt(*event);
  if (OnFollow && item != nullptr && !item->Shown().target.empty()) {
    OnFollow();
  } else {
    QGraphicsView::mouseDoubleClickEvent(event);
  }
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->position().toPoint();
  QGraphicsView::mousePressEvent(event);
}

// A drag moves the picture and chooses nothing.
void PictureView::mouseReleaseEvent(QMouseEvent* event) {
  QGraphicsView::mouseReleaseEvent(event);
  if (event->button() != Qt::LeftButton || !pressed_) return;
  const QPoint moved = event->position().toPoint() - *pressed_;
  if (moved.manhattanLength() >= QApplication::startDragDistance()) return;
  const FigureItem* item = FigureAt(*event);
  if (OnClick && item != nullptr && !item->Shown().id.empty()) OnClick(item->Shown().id);
}

}  // namespace merivane::desktop
