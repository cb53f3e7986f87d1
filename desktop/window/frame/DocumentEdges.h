#pragma once

#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QObject>
#include <QPoint>

namespace tessel {

/// Lets a document be sized by the margin of its form: the line around it is too thin to be hit.
class DocumentEdges final : public QObject {
 public:
  /// A child of the document, which has its form in it already.
  explicit DocumentEdges(QMdiSubWindow& document);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool TakesMouse(QMouseEvent& event);
  [[nodiscard]] QPoint OnLine(const QPoint& place) const;
  void LeaveEdge();
  void Forward(const QMouseEvent& event, const QPoint& place) const;

  QMdiSubWindow& document_;
  bool dragging_ = false;
  bool over_ = false;  ///< The pointer was over an edge last.
};

}  // namespace tessel
