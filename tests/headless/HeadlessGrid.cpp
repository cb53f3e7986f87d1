#include "tests/headless/HeadlessGrid.h"

#include <algorithm>
#include <utility>

#include "tests/support/TestStop.h"

namespace tessel::test {

void HeadlessGrid::SetDataSource(std::shared_ptr<Recordset> recordset) {
  if (recordset != nullptr && (recordset->State() & objectState::open) == 0)
    StopTest(Name() + " is bound to a recordset that is not open.");
  CloseEditor();
  source_ = std::move(recordset);
  marked_ = nullptr;
  columns_.assign(source_ == nullptr ? 0 : source_->Fields().size(), {});
  SelectCellAlone();
  knownCount_ = source_ == nullptr ? 0 : source_->RecordCount();
  onNewRow_ = source_ != nullptr && knownCount_ == 0 && allowAddNew_;
  currentColumn_ = columns_.empty() ? -1 : 0;
  if (source_ != nullptr && source_->RecordCount() > 0) {
    source_->MoveFirst();
    Raise(RowColChange);
  }
  Raise(RowsChange);
}

void HeadlessGrid::SetZoom(int percent) { zoom_ = NearestZoom(percent); }

void HeadlessGrid::SetAllowAddNew(bool allow) {
  allowAddNew_ = allow;
  if (!allow) onNewRow_ = false;
  Refresh();
}

void HeadlessGrid::Refresh() {
  if (source_ == nullptr || (source_->State() & objectState::open) == 0) return;
  const std::int64_t count = source_->RecordCount();
  const bool grown = count > std::exchange(knownCount_, count);
  std::erase_if(selected_, [&](Bookmark row) { return !source_->PositionOf(row); });
  cells_.lastRow = std::min(cells_.lastRow, count - 1);
  if (grown && source_->Editing() != EditMode::Add) onNewRow_ = false;
  if (count == 0) onNewRow_ = allowAddNew_;
  if (count > 0 && !onNewRow_ && source_->Eof()) source_->MoveLast();
  Raise(RowsChange);
}

void HeadlessGrid::SelectColumns(int first, int last) {
  if (first != -1 || last != -1) {
    static_cast<void>(At(first));
    static_cast<void>(At(last));
  }
  firstColumn_ = first;
  lastColumn_ = last;
  cells_ = {};
  NoteSelection();
}

/// A single cell is no selection.
void HeadlessGrid::SelectCells(const GridCells& cells) {
  if (!cells.IsEmpty()) {
    static_cast<void>(At(cells.firstColumn));
    static_cast<void>(At(cells.lastColumn));
  }
  SelectCellAlone();
  const bool isOne = cells.firstRow == cells.lastRow && cells.firstColumn == cells.lastColumn;
  if (!isOne && !cells.IsEmpty()) cells_ = cells;
  cells_.lastRow = std::min(cells_.lastRow, source_->RecordCount() - 1);
  NoteSelection();
}

void HeadlessGrid::NoteSelection() { Raise(SelectionChange); }

bool HeadlessGrid::GoToCell(std::int64_t position, int column) {
  if (source_ == nullptr || position < 0 || position >= source_->RecordCount()) return false;
  if (column < 0 || column >= ColumnCount() || !MoveTo(position, column)) return false;
  if (!cells_.IsEmpty() || !selected_.empty()) SelectCells({});
  return true;
}

void HeadlessGrid::SetColumnWidth(int column, int twips) {
  At(column).width = twips <= 0 ? ordinaryWidth : std::max(twips, narrowest);
}

void HeadlessGrid::MoveToColumn(int column) {
  if (column == currentColumn_) return;
  EndEdit();
  currentColumn_ = column;
  Raise(RowColChange);
  Raise(RowsChange);
}

std::string HeadlessGrid::ShownText(std::int64_t position, int column) const {
  const std::int64_t records =
      source_->RecordCount() + (source_->Editing() == EditMode::Add ? 1 : 0);
  if (position == records && allowAddNew_) return {};
  const ValueView value = source_->ValueAt(position, static_cast<std::size_t>(column));
  std::string text;
  if (DataFormat* format = At(column).format) format->Format.Raise(failures_, value, text);
  if (!text.empty()) return text;
  return IsNull(value) ? "NULL" : ToText(value);
}

void HeadlessGrid::Copy() {
  if (currentColumn_ < 0) return;
  if (!cells_.IsEmpty()) return CopyCells();
  const bool wholeRows = firstColumn_ < 0 && !selected_.empty();
  const int first = wholeRows ? 0 : std::max(firstColumn_, 0);
  const bool oneCell = firstColumn_ < 0 && selected_.empty();
  const int from = oneCell ? currentColumn_ : first;
  const int to = oneCell ? currentColumn_ : wholeRows ? ColumnCount() - 1 : lastColumn_;
  std::string text;
  for (const std::int64_t position : RowsToCopy()) {
    if (!text.empty()) text += "\r\n";
    for (int column = from; column <= to; ++column) {
      if (column > from) text += '\t';
      AppendText(source_->ValueAt(position, static_cast<std::size_t>(column)), text);
    }
  }
  clipboard_->SetText(text);
}

void HeadlessGrid::CopyCells() {
  std::string text;
  for (std::int64_t row = cells_.firstRow; row <= cells_.lastRow; ++row) {
    if (row > cells_.firstRow) text += "\r\n";
    for (int column = cells_.firstColumn; column <= cells_.lastColumn; ++column) {
      if (column > cells_.firstColumn) text += '\t';
      AppendText(source_->ValueAt(row, static_cast<std::size_t>(column)), text);
    }
  }
  clipboard_->SetText(text);
}

/// A block is for who listens; any other text is typed.
bool HeadlessGrid::PasteText() {
  bool taken = false;
  Raise(Paste, taken);
  if (!taken && !clipboard_->Text().empty()) TypeText(clipboard_->Text());
  return true;
}

/// A cell stands 1500 twips wide and 255 high below a head of 300.
Rect HeadlessGrid::CellBounds() const {
  if (currentColumn_ < 0 || CellPosition() < 0) return {};
  return {currentColumn_ * 1500, 300 + static_cast<int>(CellPosition()) * 255, 1500, 255};
}

void HeadlessGrid::ClickCell(std::int64_t position, int column) {
  static_cast<void>(MoveTo(position, column));
}

void HeadlessGrid::DoubleClickCell(std::int64_t position, int column) {
  if (MoveTo(position, column)) EditCell();
}

void HeadlessGrid::ClickButton(std::int64_t position, int column) {
  if (!At(column).button)
    StopTest("Column " + std::to_string(column) + " of " + Name() + " has no button.");
  if (MoveTo(position, column)) Raise(ButtonClick, column);
}

void HeadlessGrid::SelectRows(const std::vector<std::int64_t>& positions) {
  selected_.clear();
  firstColumn_ = lastColumn_ = -1;
  for (const std::int64_t position : positions) {
    if (!MoveTo(position, currentColumn_)) return;
    selected_.push_back(source_->BookmarkAt(position));
    anchor_ = position;
  }
  cells_ = {};
  NoteSelection();
}

void HeadlessGrid::GoToNewRow() {
  if (!allowAddNew_ || source_ == nullptr) StopTest(Name() + " has no row for a new record.");
  static_cast<void>(MoveTo(LastPosition(), currentColumn_));
}

bool HeadlessGrid::TakeKey(int keyCode, int shift) {
  if (source_ == nullptr || currentColumn_ < 0) return false;
  if (keyCode == 'C' && shift == shiftState::ctrl && !editing_) {
    Copy();
    return true;
  }
  if (keyCode == 'V' && shift == shiftState::ctrl && !editing_) return PasteText();
  if (keyCode == key::tab) return MoveToNext(shift == shiftState::shift ? -1 : 1);
  const bool held = shift == shiftState::shift || shift == shiftState::ctrl;
  if (keyCode == key::space && held && !editing_) return SelectRowByKey(shift == shiftState::ctrl);
  const bool extends = shift == shiftState::shift && !selected_.empty() && anchor_ >= 0;
  if (extends && keyCode == key::up) return ExtendRows(-1);
  if (extends && keyCode == key::down) return ExtendRows(1);
  const std::string typed = CharacterOfKey(keyCode, shift);
  if (!typed.empty()) {
    TypeText(typed);
    return true;
  }
  if (shift != shiftState::none) return false;
  if (keyCode == key::enter) {
    MoveToNext(1);
    return true;
  }
  if (keyCode == key::back || keyCode == key::del) return Erase(keyCode == key::back);
  if (keyCode == key::left || keyCode == key::right) {
    if (editing_) return TakeEditorKey(keyCode);
    const int column = currentColumn_ + (keyCode == key::left ? -1 : 1);
    MoveToColumn(std::clamp(column, 0, ColumnCount() - 1));
    return true;
  }
  if (keyCode != key::up && keyCode != key::down) return false;
  if (!UserLeaves(false)) return true;
  const std::int64_t position = CellPosition() + (keyCode == key::up ? -1 : 1);
  if (LastPosition() < 0) return false;
  static_cast<void>(MoveTo(std::clamp<std::int64_t>(position, 0, LastPosition()), currentColumn_));
  return true;
}

/// From cell to cell and row to row; false beyond the ends.
bool HeadlessGrid::MoveToNext(int step) {
  if (!UserLeaves(false)) return true;
  const std::int64_t at = CellPosition() * ColumnCount() + currentColumn_ + step;
  if (at < 0 || at / ColumnCount() > LastPosition()) return false;
  static_cast<void>(MoveTo(at / ColumnCount(), static_cast<int>(at % ColumnCount())));
  return true;
}

bool HeadlessGrid::TakeEditorKey(int keyCode) {
  const std::size_t caret = editor_.Caret();
  if (keyCode == key::left) editor_.Select(caret == 0 ? 0 : caret - 1, 0);
  else editor_.Select(caret + 1, 0);
  return true;
}

/// The row alone, which is taken back when it is that already; `add` keeps the others.
bool HeadlessGrid::SelectRowByKey(bool add) {
  if (onNewRow_ || CurrentPosition() < 0) return true;
  anchor_ = CurrentPosition();
  const bool had = std::erase(selected_, source_->CurrentBookmark()) > 0;
  if (had && (add || selected_.empty())) {
    NoteSelection();
    return true;
  }
  if (!add) SelectCellAlone();
  selected_.push_back(source_->CurrentBookmark());
  NoteSelection();
  return true;
}

bool HeadlessGrid::ExtendRows(int step) {
  const std::int64_t last = source_->RecordCount() - 1;
  const std::int64_t to = std::clamp<std::int64_t>(CurrentPosition() + step, 0, last);
  if (!MoveTo(to, currentColumn_)) return true;
  const std::int64_t direction = to < anchor_ ? -1 : 1;
  SelectCellAlone();
  for (std::int64_t at = anchor_; at != to + direction; at += direction)
    selected_.push_back(source_->BookmarkAt(at));
  NoteSelection();
  return true;
}

bool HeadlessGrid::Erase(bool backwards) {
  if (!CanEditCell()) return false;
  if (!UserBegins()) return true;
  if (!editing_ && !CanEmptyCell()) return true;
  if (!editing_) {
    OpenEditor(CellText(), true);
  } else if (backwards) {
    editor_.SelectBackwards();
  } else {
    editor_.SelectForwards();
  }
  TypeCharacter("");
  return true;
}

void HeadlessGrid::TypeText(std::string_view text) {
  while (!text.empty()) {
    const std::string_view character = FirstCharacter(text);
    text.remove_prefix(character.size());
    if (character == " " && UserTurnsOver()) continue;
    if (!UserBegins()) return;
    if (!editing_) OpenEditor("", false);
    TypeCharacter(character);
  }
}

void HeadlessGrid::TypeCharacter(std::string_view character) {
  editor_.Replace(character);
  edited_ = true;
  UserTyped();
}

void HeadlessGrid::OpenEditor(const std::string& text, bool select) {
  if (!std::exchange(editing_, true)) editor_.SetText(text);
  const std::size_t length = editor_.Text().size();
  editor_.Select(select ? 0 : length, select ? length : 0);
}

void HeadlessGrid::SelectCellAlone() {
  cells_ = {};
  selected_.clear();
  firstColumn_ = lastColumn_ = -1;
}

const HeadlessGrid::Column& HeadlessGrid::At(int column) const {
  if (column < 0 || column >= ColumnCount())
    StopTest(Name() + " has no column " + std::to_string(column) + ".");
  return columns_[static_cast<std::size_t>(column)];
}

HeadlessGrid::Column& HeadlessGrid::At(int column) {
  return const_cast<Column&>(std::as_const(*this).At(column));
}

/// The row for a new record counts, and while one is begun the next one too.
std::int64_t HeadlessGrid::LastPosition() const {
  const std::int64_t begun = source_->Editing() == EditMode::Add ? 1 : 0;
  return source_->RecordCount() - 1 + begun + (allowAddNew_ ? 1 : 0);
}

/// False when the user stays.
bool HeadlessGrid::MoveTo(std::int64_t position, int column) {
  static_cast<void>(At(column));
  if (position < 0 || position > LastPosition())
    StopTest(Name() + " has no row " + std::to_string(position) + ".");
  if (column == currentColumn_ && position == CellPosition()) return true;
  if (!UserLeaves(position != CellPosition())) return false;
  currentColumn_ = column;
  position = std::min(position, LastPosition());
  const bool begun = source_->Editing() == EditMode::Add && position == CellPosition();
  onNewRow_ = begun || position >= source_->RecordCount();
  if (!onNewRow_) source_->MoveTo(source_->BookmarkAt(position));
  Raise(RowColChange);
  Raise(RowsChange);
  return true;
}

std::vector<std::int64_t> HeadlessGrid::RowsToCopy() const {
  std::vector<std::int64_t> rows;
  for (const Bookmark bookmark : selected_)
    if (const auto position = source_->PositionOf(bookmark)) rows.push_back(*position);
  if (!selected_.empty()) return rows;
  if (firstColumn_ < 0) return source_->RecordCount() == 0 ? rows : std::vector{CurrentPosition()};
  for (std::int64_t row = 0; row < source_->RecordCount(); ++row) rows.push_back(row);
  return rows;
}

std::int64_t HeadlessGrid::CellPosition() const {
  return onNewRow_ ? source_->RecordCount() : CurrentPosition();
}

std::int64_t HeadlessGrid::CurrentPosition() const {
  if (source_->Bof() || source_->Eof()) return -1;
  return source_->PositionOf(source_->CurrentBookmark()).value_or(-1);
}

}  // namespace tessel::test
