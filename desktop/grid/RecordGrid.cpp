// The table widget of a data grid when nothing is edited: how it is set up, how keys and mouse move
// and select, how wide columns are, what is copied. GridEditing.cpp has the part of this class that
// edits; the two together would be too long for one file.

#include "desktop/grid/RecordGrid.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <algorithm>
#include <functional>

#include "desktop/grid/cells/CellDelegate.h"
#include "desktop/grid/cells/CellEditor.h"
#include "desktop/grid/cells/GridHeader.h"
#include "desktop/grid/cells/ShownText.h"
#include "desktop/look/Icons.h"

namespace tessel {

namespace {

// At the ordinary font, in pixels.
constexpr double ordinaryHeight = 16;
constexpr int narrowestColumn = 48;
constexpr int narrowestByUser = 24;
constexpr int widestColumn = 320;
constexpr int widestNumber = 480;
constexpr int wheelStep = 120;
constexpr int sampleRowsMost = 100;
constexpr int sampleCellsMost = 20'000;
constexpr std::ptrdiff_t textsMeasured = 10;
constexpr int dragInterval = 50;

}  // namespace

RecordGrid::RecordGrid(QWidget* parent)
    : GridView(parent),
      model_(new RecordsModel(this)),
      rowHeader_(new GridHeader(Qt::Vertical, *this)),
      editor_(new CellEditor(*this)),
      selection_([this](int row) { return model_->Source()->BookmarkAt(row); }) {
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setWordWrap(false);
  setShowGrid(false);
  setFrameShape(NoFrame);
  setHorizontalScrollMode(ScrollPerPixel);
  setItemDelegate(new CellDelegate(*this));
  SetUpHeaders();
  setModel(model_);
  SizeRows();
  connect(editor_, &CellEditor::typed, this, [this] {
    if (user_ != nullptr) user_->Typed();
  });
  connect(editor_, &CellEditor::closed, rowHeader_->viewport(),
          qOverload<>(&QWidget::update));  // It may have had the pencil.
  dragTimer_.setInterval(dragInterval);
  connect(&dragTimer_, &QTimer::timeout, this, [this] { DragTo(dragPlace_); });
}

/// The table's own answer to a pressed header is to select Qt's way: it is taken away.
void RecordGrid::SetUpHeaders() {
  auto* columns = new GridHeader(Qt::Horizontal, *this);
  setHorizontalHeader(columns);
  setVerticalHeader(rowHeader_);
  for (QHeaderView* header :
       {static_cast<QHeaderView*>(columns), static_cast<QHeaderView*>(rowHeader_)}) {
    disconnect(header, &QHeaderView::sectionPressed, this, nullptr);
    disconnect(header, &QHeaderView::sectionEntered, this, nullptr);
  }
  connect(columns, &QHeaderView::sectionPressed, this, [this](int column) { PressColumn(column); });
  connect(columns, &QHeaderView::sectionEntered, this, [this](int column) {
    selection_.DragToColumn(column);
    ShowSelection();
  });
  connect(columns, &QHeaderView::sectionResized, this, [this](int column) {
    if (!sizing_) sized_.insert(column);
  });
  connect(rowHeader_, &QHeaderView::sectionPressed, this, [this](int row) { PressRow(row); });
  connect(rowHeader_, &QHeaderView::sectionEntered, this, [this](int row) {
    selection_.DragToRow(std::min(row, model_->Records() - 1));
    ShowSelection();
    scrollTo(model_->index(row, std::max(currentIndex().column(), 0)));
  });
}

void RecordGrid::Bind(const std::shared_ptr<Recordset>& source) {
  ++quiet_;
  dragging_ = false;
  editor_->Close();
  selection_.Clear();
  model_->SetSource(source);
  SizeRowHeader();
  SizeColumns();
  if (model_->RowCount() > 0 && model_->ColumnCount() > 0)
    selectionModel()->setCurrentIndex(model_->index(0, 0), QItemSelectionModel::NoUpdate);
  --quiet_;
}

/// Of selected rows and columns the cells where they cross.
bool RecordGrid::ShowsSelected(int row, int column) {
  if (selection_.Cells().Contains(row, column)) return true;
  if (selection_.Rows().empty()) return selection_.HasColumn(column);
  const bool allColumns = selection_.FirstColumn() < 0;
  return (allColumns || selection_.HasColumn(column)) && RowSelected(row);
}

bool RecordGrid::RowSelected(int row) {
  if (selection_.Rows().empty()) return false;
  const std::optional<Bookmark> bookmark = model_->BookmarkAt(row);
  return bookmark && selection_.HasRow(*bookmark);
}

void RecordGrid::GoTo(int row, int column, bool extend) {
  if (!MayGoTo(row, column)) return;
  row = std::min(row, model_->RowCount() - 1);
  if (extend && selection_.Cells().IsEmpty())
    selection_.StartAt(currentIndex().row(), currentIndex().column());
  if (extend) selection_.ExtendTo(row, column);
  else selection_.StartAt(row, column);
  selectionModel()->setCurrentIndex(model_->index(row, column), QItemSelectionModel::NoUpdate);
  ShowSelection();
}

bool RecordGrid::GoToCell(int row, int column) {
  GoTo(row, column, false);
  if (currentIndex() != model_->index(row, column)) return false;
  scrollTo(currentIndex());
  return true;
}

/// A single cell is no selection.
void RecordGrid::SelectCells(const CellRange& cells) {
  const bool isOne = cells.firstRow == cells.lastRow && cells.firstColumn == cells.lastColumn;
  if (cells.IsEmpty() || isOne) selection_.StartAt(currentIndex().row(), currentIndex().column());
  else selection_.SetCells(cells);
  ShowSelection();
}

void RecordGrid::Copy() {
  if (!currentIndex().isValid() || SelectedCells().rowCount <= 0) return;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  try {
    CopyToClipboard(*model_, SelectedCells());
    QApplication::restoreOverrideCursor();
  } catch (...) {
    QApplication::restoreOverrideCursor();
    if (failed) failed(std::current_exception());
  }
}

void RecordGrid::ShowSelection() {
  viewport()->update();
  horizontalHeader()->viewport()->update();
  rowHeader_->viewport()->update();
  if (std::exchange(told_, selection_.Now()) != told_) emit otherSelected();
}

void RecordGrid::FollowRecord() {
  const auto& source = model_->Source();
  if (source == nullptr || (source->State() & objectState::open) == 0) return;
  if (quiet_ > 0 || OnNewRow() || source->Bof() || source->Eof()) return;
  const auto position = source->PositionOf(source->CurrentBookmark());
  if (!position || *position == currentIndex().row() || *position >= model_->RowCount()) return;
  ++quiet_;
  editor_->Close();
  const int column = std::max(currentIndex().column(), 0);
  selectionModel()->setCurrentIndex(model_->index(static_cast<int>(*position), column),
                                    QItemSelectionModel::NoUpdate);
  --quiet_;
  ShowSelection();
  emit recordFollowed();
}

void RecordGrid::selectAll() {
  if (model_->Records() == 0) return;
  selection_.SetCells({0, 0, model_->Records() - 1, model_->ColumnCount() - 1});
  ShowSelection();
}

void RecordGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  rowHeader_->viewport()->update();
  if (quiet_ > 0 || !current.isValid()) return;
  setAttribute(Qt::WA_InputMethodEnabled);
  if (current.row() != previous.row() && !model_->IsNewRow(current.row()))
    MoveRecord(current.row());
  emit currentCellMoved();
}

void RecordGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return Copy();
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  if (ZoomByKey(*event) || SelectRowByKey(*event) || StartTyping(*event)) return;
  const QModelIndex target = TargetOf(*event);
  if (!target.isValid()) return event->ignore();
  const bool tab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
  const bool extend = !tab && event->modifiers().testFlag(Qt::ShiftModifier);
  if (extend && selection_.ExtendsRows()) SelectRow(target.row(), target.column(), false, true);
  else GoTo(target.row(), target.column(), extend);
}

void RecordGrid::mousePressEvent(QMouseEvent* event) {
  const QPoint place = event->position().toPoint();
  const QModelIndex index = indexAt(place);
  if (!index.isValid()) return;
  if (event->button() == Qt::RightButton) {
    if (!ShowsSelected(index.row(), index.column())) GoTo(index.row(), index.column(), false);
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  buttonDown_ = OnButton(index, place);
  if (buttonDown_) return;
  GoTo(index.row(), index.column(), event->modifiers().testFlag(Qt::ShiftModifier));
  dragging_ = true;
}

void RecordGrid::mouseMoveEvent(QMouseEvent* event) {
  if (!dragging_ || !event->buttons().testFlag(Qt::LeftButton)) return;
  dragPlace_ = event->position().toPoint();
  if (viewport()->rect().contains(dragPlace_)) dragTimer_.stop();
  else if (!dragTimer_.isActive()) dragTimer_.start();
  DragTo(dragPlace_);
}

void RecordGrid::mouseReleaseEvent(QMouseEvent* event) {
  dragTimer_.stop();
  dragging_ = false;
  const QPoint place = event->position().toPoint();
  const QModelIndex index = indexAt(place);
  if (std::exchange(buttonDown_, false) && OnButton(index, place))
    emit buttonPressed(index.column());
}

void RecordGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
  const bool onCell = indexAt(event->position().toPoint()) == currentIndex();
  if (event->button() != Qt::LeftButton || buttonDown_ || !onCell || user_ == nullptr) return;
  dragging_ = false;
  user_->OpensCell();
}

/// On a column with a button the context-menu key belongs to the button.
void RecordGrid::contextMenuEvent(QContextMenuEvent* event) {
  const QModelIndex current = currentIndex();
  const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
  if (!current.isValid() || (byKey && model_->ColumnAt(current.column()).button)) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(NamedIcon("edit-copy"), tr("&Copy\tCtrl+C"), this, [this] { Copy(); });
  menu->addSeparator();
  menu->addAction(tr("&Reset Zoom"), this, [this] { SetZoom(ordinaryZoom); });
  menu->popup(byKey ? viewport()->mapToGlobal(visualRect(current).center()) : event->globalPos());
}

void RecordGrid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  QMetaObject::invokeMethod(
      this, [this] { FollowRecord(); }, Qt::QueuedConnection);
}

/// When the desktop's font is another one, those around this widget have it once that has gone
/// round.
bool RecordGrid::event(QEvent* event) {
  const bool taken = GridView::event(event);
  if (event->type() == QEvent::ApplicationFontChange && zoom_ != ordinaryZoom)
    QMetaObject::invokeMethod(
        this, [this] { UseZoomedFont(); }, Qt::QueuedConnection);
  return taken;
}

void RecordGrid::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange && rowHeader_ != nullptr) SizeRows();
}

void RecordGrid::SizeRows() {
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  SizeRowHeader();
}

/// The cells make room for it at once, which the table does by itself only when rows come or go.
void RecordGrid::SizeRowHeader() {
  const int width = rowHeader_->WidthForRows(model_->RowCount());
  if (width == rowHeader_->width()) return;
  rowHeader_->setFixedWidth(width);
  updateGeometries();
}

int RecordGrid::Scaled(int drawn) const {
  return static_cast<int>(drawn * fontMetrics().height() / ordinaryHeight);
}

/// Once, from the names and the first rows: asking a view to fit its contents would read every row.
void RecordGrid::SizeColumns() {
  const int columns = model_->ColumnCount();
  sized_.clear();
  wanted_.clear();
  if (columns == 0) return;
  const int sampleRows =
      std::min({model_->RowCount(), sampleRowsMost, sampleCellsMost / columns + 1});
  const int measured = LastColumnFills() ? columns - 1 : columns;
  for (int column = 0; column < measured; ++column)
    SetColumnWidth(column, WidthOf(column, 0, sampleRows));
  if (LastColumnFills()) FillWithLastColumn();
}

/// The header gives the last column what is left when it is told to.
void RecordGrid::FillWithLastColumn() {
  SetColumnWidth(model_->ColumnCount() - 1, Scaled(narrowestColumn));
  sizing_ = true;
  SetLastColumnFills(false);
  SetLastColumnFills(true);
  sizing_ = false;
}

void RecordGrid::ChangeWidth(int column, int width) {
  const int first = std::max(rowAt(0), 0);
  const int sampleRows = std::min(model_->RowCount() - first, RowsOnPage() + 2);
  const int wanted =
      width > 0 ? std::max(width, Scaled(narrowestByUser)) : WidthOf(column, first, sampleRows);
  horizontalHeader()->resizeSection(column, wanted);
}

void RecordGrid::SetColumnWidth(int column, int width) {
  sizing_ = true;
  horizontalHeader()->resizeSection(column, width);
  sizing_ = false;
}

bool RecordGrid::LastColumnFills() const { return horizontalHeader()->stretchLastSection(); }

void RecordGrid::SetLastColumnFills(bool fills) {
  horizontalHeader()->setStretchLastSection(fills);
}

/// It is painting: the columns become wider when that is over.
void RecordGrid::WantWidth(int column, int width) {
  if (sized_.contains(column)) return;
  if (LastColumnFills() && column == model_->ColumnCount() - 1) return;
  int& wanted = wanted_[column];
  if (wanted_.size() == 1 && wanted == 0)
    QMetaObject::invokeMethod(
        this, [this] { WidenColumns(); }, Qt::QueuedConnection);
  wanted = std::max(wanted, width);
}

void RecordGrid::WidenColumns() {
  for (const auto& [column, width] : std::exchange(wanted_, {}))
    if (column < model_->ColumnCount() && width > columnWidth(column))
      SetColumnWidth(column, std::min(width, std::max(Scaled(widestNumber), columnWidth(column))));
}

/// Of the different texts only the longest are measured: that takes much longer than to read them.
/// There is always room for a null.
int RecordGrid::WidthOf(int column, int firstRow, int sampleRows) const {
  const QFontMetrics metrics = fontMetrics();
  int width = std::max(
      metrics.horizontalAdvance(AsShown(std::string_view(model_->FieldName(column)))), NullWidth());
  std::vector<QString> texts;
  for (int row = 0; row < sampleRows; ++row)
    texts.push_back(model_->CellAt(firstRow + row, column).text);
  const auto longer = [](const QString& a, const QString& b) {
    return a.size() != b.size() ? a.size() > b.size() : a < b;
  };
  std::ranges::sort(texts, longer);
  texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
  const auto longest = texts.begin() + std::min<std::ptrdiff_t>(std::ssize(texts), textsMeasured);
  const int widest = Scaled(model_->IsNumberColumn(column) ? widestNumber : widestColumn);
  for (auto text = texts.begin(); text != longest && width < widest; ++text)
    width = std::max(width, metrics.horizontalAdvance(*text));
  return std::clamp(width + cellMargins, Scaled(narrowestColumn), widest);
}

int RecordGrid::NullWidth() const {
  QFont italic = font();
  italic.setItalic(true);
  return QFontMetrics(italic).horizontalAdvance(AsShown(ValueView())) + 1;
}

// --- zoom ----------------------------------------------------------------------------------------

void RecordGrid::SetZoom(int percent) {
  const int before = std::exchange(zoom_, NearestZoom(percent));
  if (before == zoom_) return;
  UseZoomedFont();
  for (int column = 0; column < model_->ColumnCount(); ++column)
    SetColumnWidth(column, columnWidth(column) * zoom_ / before);
  if (currentIndex().isValid()) scrollTo(currentIndex());
}

/// At the ordinary size it is the font of those around, without a copy that would stay behind.
void RecordGrid::UseZoomedFont() {
  if (zoom_ == ordinaryZoom) return setFont(QFont());
  QFont font = parentWidget() == nullptr ? QApplication::font() : parentWidget()->font();
  font.setPointSizeF(font.pointSizeF() * zoom_ / ordinaryZoom);
  setFont(font);
}

/// Plus is often typed with Shift, and sometimes stands on the same key as "=".
bool RecordGrid::ZoomByKey(const QKeyEvent& event) {
  const auto held = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
  if (held != Qt::ControlModifier) return false;
  const bool larger = event.key() == Qt::Key_Plus || event.key() == Qt::Key_Equal;
  if (!larger && event.key() != Qt::Key_Minus) return false;
  SetZoom(NextZoom(zoom_, larger ? 1 : -1));
  return true;
}

void RecordGrid::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QTableView::wheelEvent(event);
  wheel_ += event->angleDelta().y();
  SetZoom(NextZoom(zoom_, wheel_ / wheelStep));
  wheel_ %= wheelStep;
  event->accept();
}

QModelIndex RecordGrid::TargetOf(const QKeyEvent& event) const {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return {};
  const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
  if (event.modifiers().testFlag(Qt::AltModifier)) return {};
  const int lastRow = model_->RowCount() - 1;
  const int lastColumn = model_->ColumnCount() - 1;
  const auto cell = [&](int row, int column) {
    return model_->index(std::clamp(row, 0, lastRow), std::clamp(column, 0, lastColumn));
  };
  const int row = current.row();
  const int column = current.column();
  switch (event.key()) {
    case Qt::Key_Left: return cell(row, ctrl ? 0 : column - 1);
    case Qt::Key_Right: return cell(row, ctrl ? lastColumn : column + 1);
    case Qt::Key_Up: return cell(ctrl ? 0 : row - 1, column);
    case Qt::Key_Down: return cell(ctrl ? lastRow : row + 1, column);
    case Qt::Key_PageUp: return cell(row - RowsOnPage(), column);
    case Qt::Key_PageDown:
      return cell(std::min(row, lastRow - RowsOnPage()) + RowsOnPage(), column);
    case Qt::Key_Home: return cell(ctrl ? 0 : row, 0);
    case Qt::Key_End: return cell(ctrl ? lastRow : row, lastColumn);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab: return NextCell(1);
    case Qt::Key_Backtab: return NextCell(-1);
    default: return {};
  }
}

/// The next or previous cell, from row to row; none beyond the ends, so that Tab leaves the grid
/// there.
QModelIndex RecordGrid::NextCell(int step) const {
  const int columns = model_->ColumnCount();
  const qint64 at =
      static_cast<qint64>(currentIndex().row()) * columns + currentIndex().column() + step;
  if (at < 0) return {};
  return model_->index(static_cast<int>(at / columns), static_cast<int>(at % columns));
}

int RecordGrid::RowsOnPage() const {
  return std::max(1, viewport()->height() / verticalHeader()->defaultSectionSize() - 1);
}

QModelIndex RecordGrid::NearestCell(const QPoint& place) const {
  const QRect inside = viewport()->rect();
  const int x = std::clamp(place.x(), 0, inside.right());
  const int y = std::clamp(place.y(), 0, inside.bottom());
  const int row = rowAt(y) < 0 ? model_->RowCount() - 1 : rowAt(y);
  const int column = columnAt(x) < 0 ? model_->ColumnCount() - 1 : columnAt(x);
  const int down = place.y() > inside.bottom() ? 1 : place.y() < 0 ? -1 : 0;
  const int right = place.x() > inside.right() ? 1 : place.x() < 0 ? -1 : 0;
  return model_->index(std::clamp(row + down, 0, model_->RowCount() - 1),
                       std::clamp(column + right, 0, model_->ColumnCount() - 1));
}

bool RecordGrid::OnButton(const QModelIndex& index, const QPoint& place) const {
  if (!index.isValid() || index != currentIndex()) return false;
  return model_->ColumnAt(index.column()).button &&
         CellDelegate::ButtonIn(visualRect(index)).contains(place);
}

void RecordGrid::PressRow(int row) {
  setFocus(Qt::MouseFocusReason);
  const Qt::KeyboardModifiers keys = QApplication::keyboardModifiers();
  const int column = std::max(currentIndex().column(), 0);
  if (model_->IsNewRow(row)) return GoTo(row, column, false);
  SelectRow(row, column, keys.testFlag(Qt::ControlModifier), keys.testFlag(Qt::ShiftModifier));
}

/// Leaving the current row may write it, and there are other rows then.
void RecordGrid::SelectRow(int row, int column, bool add, bool extend) {
  row = std::min(row, model_->Records() - 1);
  if (row < 0 || !MayGoTo(row, column)) return;
  row = std::min(row, model_->Records() - 1);
  if (row < 0) return;
  selectionModel()->setCurrentIndex(model_->index(row, column), QItemSelectionModel::NoUpdate);
  selection_.PressRow(row, add, extend);
  ShowSelection();
}

/// Space with Shift selects the current row alone, and takes that back; with Ctrl it adds the row
/// to those selected or takes it away. The row for a new record is none.
bool RecordGrid::SelectRowByKey(const QKeyEvent& event) {
  const auto held = event.modifiers() & ~Qt::KeypadModifier;
  if (event.key() != Qt::Key_Space) return false;
  if (held != Qt::ShiftModifier && held != Qt::ControlModifier) return false;
  TurnRow(held == Qt::ControlModifier);
  return true;
}

void RecordGrid::TurnRow(bool add) {
  const QModelIndex current = currentIndex();
  if (!current.isValid() || model_->IsNewRow(current.row())) return;
  const bool alone = selection_.Rows().size() == 1 && RowSelected(current.row());
  SelectRow(current.row(), current.column(), alone || add, false);
}

void RecordGrid::PressColumn(int column) {
  setFocus(Qt::MouseFocusReason);
  const Qt::KeyboardModifiers keys = QApplication::keyboardModifiers();
  selection_.PressColumn(column, keys.testFlag(Qt::ControlModifier),
                         keys.testFlag(Qt::ShiftModifier));
  ShowSelection();
}

void RecordGrid::DragTo(const QPoint& place) {
  if (!dragging_ || model_->RowCount() == 0) return;
  const QModelIndex index = NearestCell(place);
  GoTo(index.row(), index.column(), true);
}

void RecordGrid::MoveRecord(int row) {
  try {
    model_->Source()->MoveTo(model_->Source()->BookmarkAt(row));
  } catch (...) {
    if (failed) failed(std::current_exception());
  }
}

CellsToCopy RecordGrid::SelectedCells() const {
  const bool hasColumns = selection_.FirstColumn() >= 0;
  const int firstColumn = hasColumns ? selection_.FirstColumn() : 0;
  const int lastColumn = hasColumns ? selection_.LastColumn() : model_->ColumnCount() - 1;
  const std::vector<Bookmark>& rows = selection_.Rows();
  if (!rows.empty())
    return {static_cast<std::int64_t>(rows.size()),
            [this](std::int64_t at) {
              const Bookmark row = selection_.Rows()[static_cast<std::size_t>(at)];
              return model_->Source()->PositionOf(row).value_or(-1);
            },
            firstColumn, lastColumn};
  if (hasColumns)
    return {model_->Records(), [](std::int64_t at) { return at; }, firstColumn, lastColumn};
  CellRange cells = selection_.Cells();
  const QModelIndex current = currentIndex();
  if (cells.IsEmpty()) cells = {current.row(), current.column(), current.row(), current.column()};
  cells.lastRow = std::min(cells.lastRow, model_->Records() - 1);
  return {cells.lastRow - cells.firstRow + 1,
          [first = cells.firstRow](std::int64_t at) { return first + at; }, cells.firstColumn,
          cells.lastColumn};
}

}  // namespace tessel
