// A picture that can be moved, zoomed and searched.
#pragma once

#include <QGraphicsView>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "store/work_listener.h"

namespace merivane::desktop {

using namespace pictures;
using namespace store;

class FigureItem;

class PictureView : public QGraphicsView {
 public:
  // `work` is told that it goes on.
  explicit PictureView(pictures::Picture picture, WorkListener& work);

  void ZoomBy(double factor);
  void ZoomTo(double scale);
  void Fit();
  double Scale() const { return transform().m11(); }

  // Marks the figure with this id, and moves no further than it takes to see it; without one
  // nothing is marked.
  bool Choose(const std::string& id);

  // Another picture in the place of this one, fitted.
  void Draw(pictures::Picture picture, WorkListener& work);
  const pictures::Picture& Drawn() const { return picture_; }

  // Title of the marked figure; empty without one.
  QString Marked() const;

  std::function<void()> OnZoom;
  // A click on a figure, by its id.
  std::function<void(const std::string& id)> OnClick;
  // A double click on one that leads elsewhere.
  std::function<void()> OnFollow;

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  FigureItem* Find(const std::string& id) const;
  FigureItem* FigureAt(const QMouseEvent& event) const;
  void SetMarked(FigureItem* item);
  void TellMarked();
  void FitAtFirst();
  void TakeColours();  // of a light or a dark system

  pictures::Picture picture_;
  QGraphicsScene scene_;
  QGraphicsRectItem* sheet_ = nullptr;  // owned by the scene, as these
  std::vector<FigureItem*> items_;
  FigureItem* marked_ = nullptr;
  bool shown_ = false;
  std::optional<QPoint> pressed_;  // where a click would have begun
};

}  // namespace merivane::desktop
