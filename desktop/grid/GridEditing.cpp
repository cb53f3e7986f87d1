// Editing in the table widget of a data grid: how typing begins, where the editor stands, how the
// user leaves a cell, and what becomes of the rows.

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPointer>
#include <algorithm>

#include "desktop/base/Typing.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellEditor.h"
#include "desktop/grid/cells/GridHeader.h"

namespace tessel {

bool RecordGrid::OnNewRow() const {
  return currentIndex().isValid() && model_->IsNewRow(currentIndex().row());
}

bool RecordGrid::RowIsBeingChanged() const {
  const auto& source = model_->Source();
  if (editor_->IsOpen() && editor_->Changed()) return true;
  return source != nullptr && (source->State() & objectState::open) != 0 &&
         source->Editing() != EditMode::None;
}

QRect RecordGrid::CurrentCell() const {
  if (!currentIndex().isValid()) return {};
  return visualRect(currentIndex()).translated(viewport()->pos());
}

// --- typing --------------------------------------------------------------------------------------

/// A key that means something to the value of the cell.
bool RecordGrid::StartTyping(const QKeyEvent& event) {
  if (user_ == nullptr || editor_->IsOpen()) return false;
  const bool paste = event.matches(QKeySequence::Paste);
  if (!TypesText(event) && !paste) return false;
  if (paste && user_->Pastes()) return true;
  if (event.key() == Qt::Key_Space && user_->TurnsOver()) return true;
  if (!user_->MayEdit()) return false;
  const bool empties = event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace;
  const QString text = paste     ? QApplication::clipboard()->text()
                       : empties ? QString()
                                 : event.text();
  if (!empties && (text.isEmpty() || (!paste && !text[0].isPrint()))) return false;
  if (user_->Begins() && (!empties || user_->MayEmpty())) TypeIntoCell(text);
  return true;
}

void RecordGrid::TypeIntoCell(const QString& text) {
  OpenEditor({}, false);
  editor_->Type(text);
}

void RecordGrid::inputMethodEvent(QInputMethodEvent* event) {
  const bool types = !event->commitString().isEmpty();
  if (types && user_ != nullptr && user_->Begins()) TypeIntoCell(event->commitString());
  event->accept();
}

QVariant RecordGrid::inputMethodQuery(Qt::InputMethodQuery query) const {
  if (query == Qt::ImEnabled) return user_ != nullptr && user_->MayEdit();
  return QTableView::inputMethodQuery(query);
}

void RecordGrid::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  setAttribute(Qt::WA_InputMethodEnabled);
}

// --- the editor ----------------------------------------------------------------------------------

void RecordGrid::OpenEditor(const QString& text, bool select) {
  if (!currentIndex().isValid()) return;
  if (!editor_->IsOpen()) {
    scrollTo(currentIndex());
    const int column = currentIndex().column();
    const DataType type = model_->Source()->Fields()[static_cast<std::size_t>(column)].type;
    const ShownCell cell = model_->CellAt(currentIndex().row(), column);
    const bool isNull = cell.isNull || model_->IsEmptyRow(currentIndex().row());
    const std::optional<Value> empty = ParseValue(type, "");
    const bool emptyIsNull = empty && std::holds_alternative<std::monostate>(*empty);
    editor_->Open(text, {isNull, emptyIsNull, cell.isNumber});
    PlaceEditor();
  }
  if (select) {
    editor_->selectAll();
  } else {
    editor_->deselect();
    editor_->end(false);
  }
}

/// Part of the cell may be scrolled away.
void RecordGrid::PlaceEditor() {
  if (editor_->IsOpen()) editor_->PlaceOver(CurrentCell().intersected(viewport()->geometry()));
}

void RecordGrid::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  if (editor_ != nullptr) PlaceEditor();
}

void RecordGrid::updateGeometries() {
  QTableView::updateGeometries();
  if (editor_ != nullptr) PlaceEditor();
}

// --- leaving the cell ----------------------------------------------------------------------------

/// False when the user has to stay, or the rows have gone meanwhile.
bool RecordGrid::MayGoTo(int row, int column) {
  const QModelIndex current = currentIndex();
  if (user_ == nullptr || (current.row() == row && current.column() == column)) return true;
  const QPointer<RecordGrid> alive(this);
  const std::shared_ptr<Recordset> source = model_->Source();
  if (!user_->Leaves(current.row() != row) || alive == nullptr) return false;
  return model_->Source() == source && model_->RowCount() > 0;
}

/// The editing ends before the place to go to is looked for: it may bring a row.
void RecordGrid::MoveFromEditor(QKeyEvent& event) {
  if (user_ != nullptr && user_->Leaves(false)) keyPressEvent(&event);
}

bool RecordGrid::TabFromEditor(bool next) {
  if (user_ == nullptr || !user_->Leaves(false)) return true;
  const QModelIndex target = NextCell(next ? 1 : -1);
  if (target.isValid()) GoTo(target.row(), target.column(), false);
  return target.isValid();
}

// --- changed rows --------------------------------------------------------------------------------

void RecordGrid::SetAllowsNew(bool allows) {
  ++quiet_;
  model_->SetAllowsNew(allows);
  --quiet_;
}

void RecordGrid::Refresh() {
  const bool wasNew = OnNewRow();
  const int before = model_->Records();
  const int column = std::max(currentIndex().column(), 0);
  ++quiet_;
  model_->Refresh();
  ForgetGoneRows();
  const bool written = model_->Records() > before && !model_->Adding();
  const int row = wasNew && !written ? model_->Records() : RowOfRecord();
  selectionModel()->setCurrentIndex(model_->index(std::min(row, model_->RowCount() - 1), column),
                                    QItemSelectionModel::NoUpdate);
  --quiet_;
  SizeRowHeader();
  PlaceEditor();
  ShowSelection();
}

void RecordGrid::ForgetGoneRows() {
  const auto& source = model_->Source();
  std::vector<Bookmark> rows = selection_.Rows();
  const auto gone = [&](Bookmark row) { return !source->PositionOf(row).has_value(); };
  if (std::erase_if(rows, gone) > 0) selection_.SetRows(rows);
}

/// The recordset's current record; behind the last one it goes back to that.
int RecordGrid::RowOfRecord() {
  const auto& source = model_->Source();
  if (source->RecordCount() == 0) return 0;
  if (model_->Adding()) return model_->Records();
  if (source->Eof()) source->MoveLast();
  if (source->Bof()) source->MoveFirst();
  return static_cast<int>(source->PositionOf(source->CurrentBookmark()).value_or(0));
}

}  // namespace tessel
