#pragma once

#include <QAbstractScrollArea>
#include <QObject>
#include <QString>
#include <functional>

namespace tessel {

/// A muted text in a view that has nothing to show: it says what to do next.
class EmptyText final : public QObject {
 public:
  /// A child of the view. `text` is asked at each painting; it is empty while the view shows
  /// something. `place`: where in the viewport the text may stand; without one it stands in the
  /// middle.
  EmptyText(QAbstractScrollArea& view, std::function<QString()> text,
            std::function<QRect()> place = {});

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Paint() const;

  QAbstractScrollArea& view_;
  std::function<QString()> text_;
  std::function<QRect()> place_;
  bool painting_ = false;  ///< The view is.
};

}  // namespace tessel
