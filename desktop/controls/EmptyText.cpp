#include "desktop/controls/EmptyText.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>

#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int margin = 8;

}  // namespace

EmptyText::EmptyText(QAbstractScrollArea& view, std::function<QString()> text,
                     std::function<QRect()> place)
    : QObject(&view), view_(view), text_(std::move(text)), place_(std::move(place)) {
  view.viewport()->installEventFilter(this);
}

/// The view paints first, the text on top of it in the same event.
bool EmptyText::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Paint || painting_) return false;
  painting_ = true;
  QCoreApplication::sendEvent(watched, event);
  painting_ = false;
  Paint();
  return true;
}

void EmptyText::Paint() const {
  const QString text = text_();
  if (text.isEmpty()) return;
  const QRect inside = view_.viewport()->rect().adjusted(margin, margin, -margin, -margin);
  QPainter painter(view_.viewport());
  painter.setFont(view_.font());
  painter.setPen(CurrentTokens().muted);
  const int where = place_ ? Qt::AlignLeft | Qt::AlignTop : Qt::AlignCenter;
  painter.drawText(place_ ? place_() : inside, where | Qt::TextWordWrap, text);
}

}  // namespace tessel
