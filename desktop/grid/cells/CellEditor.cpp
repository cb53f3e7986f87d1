#include "desktop/grid/cells/CellEditor.h"

#include <QKeyEvent>
#include <limits>

#include "desktop/grid/cells/GridView.h"

namespace tessel {

namespace {

bool LeavesCell(const QKeyEvent& event) {
  if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: return true;
    default: return false;
  }
}

}  // namespace

CellEditor::CellEditor(GridView& grid) : QLineEdit(&grid), grid_(grid) {
  setFrame(false);
  setMaxLength(std::numeric_limits<int>::max());
  setFocusPolicy(Qt::ClickFocus);
  setAccessibleName(tr("Cell"));
  hide();
  connect(this, &QLineEdit::textEdited, this, [this] { NoteTyped(); });
}

/// As long as nothing was typed into a null, and whenever an empty text means it, the word stands
/// there.
void CellEditor::Open(const QString& text, const Cell& cell) {
  open_ = true;
  changed_ = false;
  emptyIsNull_ = cell.emptyIsNull;
  setText(text);
  setAlignment((cell.isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  setPlaceholderText(cell.isNull || cell.emptyIsNull ? QStringLiteral("NULL") : QString());
  show();
  raise();
  grid_.setFocusProxy(this);
  setFocus(Qt::OtherFocusReason);
}

/// A widget that is hidden would hand the keyboard to whatever comes next.
void CellEditor::Close() {
  if (!open_) return;
  open_ = false;
  grid_.setFocusProxy(nullptr);
  if (hasFocus()) grid_.setFocus(Qt::OtherFocusReason);
  hide();
  clear();
  emit closed();
}

void CellEditor::Type(const QString& text) {
  setText(text);
  NoteTyped();
}

void CellEditor::NoteTyped() {
  changed_ = true;
  if (!emptyIsNull_) setPlaceholderText({});
  emit typed();
}

void CellEditor::PlaceOver(const QRect& cell) { setGeometry(cell.adjusted(2, 1, -2, -1)); }

void CellEditor::keyPressEvent(QKeyEvent* event) {
  if (LeavesCell(*event)) grid_.MoveFromEditor(*event);
  else QLineEdit::keyPressEvent(event);
}

bool CellEditor::focusNextPrevChild(bool next) {
  return grid_.TabFromEditor(next) || QLineEdit::focusNextPrevChild(next);
}

}  // namespace tessel
