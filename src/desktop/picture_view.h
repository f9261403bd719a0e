// A picture that can be moved, zoomed and searched.
#pragma once

#include <QGraphicsView>
#include <functional>
#include <vector>

#include "pictures/picture.h"
#include "store/work.h"

namespace merivane::desktop {

using namespace pictures;
using namespace store;

class FigureItem;

class PictureView : public QGraphicsView {
 public:
  // `work` is told that it goes on.
  explicit PictureView(pictures::Picture picture, Work& work);

  void ZoomBy(double factor);
  void ZoomTo(double scale);
  void Fit();
  double Scale() const { return transform().m11(); }

  // Marks the next figure whose first line holds the text, in any case of letters, and centres it:
  // from the one that is marked, or from the first where `anew`. How many there are, and which of
  // them it is (from 1); nothing is marked where there is none.
  struct Found {
    int place = 0;
    int count = 0;
  };
  Found Find(const QString& text, bool anew);

  // Marks and centres the figure with this id.
  bool GoTo(const std::string& id);

  // Title of the marked figure; empty without one.
  QString Marked() const;

  std::function<void()> OnZoom;

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void Mark(FigureItem* item);

  pictures::Picture picture_;
  QGraphicsScene scene_;
  std::vector<FigureItem*> items_;  // owned by the scene
  FigureItem* marked_ = nullptr;
  bool shown_ = false;
};

}  // namespace merivane::desktop
