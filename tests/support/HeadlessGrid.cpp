#include "tests/support/HeadlessGrid.h"

#include <algorithm>
#include <utility>

#include "tests/support/TestStop.h"

namespace tessel::test {

void HeadlessGrid::SetDataSource(std::shared_ptr<Recordset> recordset) {
  if (recordset != nullptr && (recordset->State() & objectState::open) == 0)
    StopTest(Name() + " is bound to a recordset that is not open.");
  source_ = std::move(recordset);
  columns_.assign(source_ == nullptr ? 0 : source_->Fields().size(), {});
  selected_.clear();
  firstColumn_ = lastColumn_ = -1;
  onNewRow_ = false;
  currentColumn_ = columns_.empty() ? -1 : 0;
  if (source_ == nullptr || source_->RecordCount() == 0) return;
  source_->MoveFirst();
  Raise(RowColChange);
}

void HeadlessGrid::SetSelColumns(int first, int last) {
  if (first != -1 || last != -1) {
    static_cast<void>(At(first));
    static_cast<void>(At(last));
  }
  firstColumn_ = first;
  lastColumn_ = last;
}

void HeadlessGrid::SetCurrentColumn(int column) {
  static_cast<void>(At(column));
  if (column == currentColumn_) return;
  currentColumn_ = column;
  Raise(RowColChange);
}

std::string HeadlessGrid::ShownText(std::int64_t position, int column) const {
  const ValueView value = source_->ValueAt(position, static_cast<std::size_t>(column));
  std::string text;
  if (DataFormat* format = At(column).format) format->Format.Raise(failures_, value, text);
  if (!text.empty()) return text;
  return IsNull(value) ? "NULL" : ToText(value);
}

void HeadlessGrid::Copy() {
  if (currentColumn_ < 0) return;
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

void HeadlessGrid::ClickCell(std::int64_t position, int column) { MoveTo(position, column); }

void HeadlessGrid::ClickButton(std::int64_t position, int column) {
  if (!At(column).button)
    StopTest("Column " + std::to_string(column) + " of " + Name() + " has no button.");
  MoveTo(position, column);
  Raise(ButtonClick, column);
}

void HeadlessGrid::SelectRows(const std::vector<std::int64_t>& positions) {
  selected_.clear();
  firstColumn_ = lastColumn_ = -1;
  for (const std::int64_t position : positions) {
    MoveTo(position, currentColumn_);
    selected_.push_back(source_->BookmarkAt(position));
  }
}

void HeadlessGrid::GoToNewRow() {
  if (!allowAddNew_ || source_ == nullptr) StopTest(Name() + " has no row for a new record.");
  if (std::exchange(onNewRow_, true)) return;
  Raise(RowColChange);
}

bool HeadlessGrid::TakeKey(int keyCode, int shift) {
  if (shift != shiftState::none || source_ == nullptr || currentColumn_ < 0) return false;
  if (keyCode == key::left || keyCode == key::right) {
    const int column = currentColumn_ + (keyCode == key::left ? -1 : 1);
    SetCurrentColumn(std::clamp(column, 0, ColumnCount() - 1));
    return true;
  }
  if ((keyCode != key::up && keyCode != key::down) || source_->RecordCount() == 0) return false;
  const std::int64_t position = CurrentPosition() + (keyCode == key::up ? -1 : 1);
  MoveTo(std::clamp<std::int64_t>(position, 0, source_->RecordCount() - 1), currentColumn_);
  return true;
}

const HeadlessGrid::Column& HeadlessGrid::At(int column) const {
  if (column < 0 || column >= ColumnCount())
    StopTest(Name() + " has no column " + std::to_string(column) + ".");
  return columns_[static_cast<std::size_t>(column)];
}

HeadlessGrid::Column& HeadlessGrid::At(int column) {
  return const_cast<Column&>(std::as_const(*this).At(column));
}

void HeadlessGrid::MoveTo(std::int64_t position, int column) {
  static_cast<void>(At(column));
  if (position < 0 || position >= source_->RecordCount())
    StopTest(Name() + " has no row " + std::to_string(position) + ".");
  const bool moved = onNewRow_ || column != currentColumn_ || position != CurrentPosition();
  onNewRow_ = false;
  currentColumn_ = column;
  source_->MoveTo(source_->BookmarkAt(position));
  if (moved) Raise(RowColChange);
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

std::int64_t HeadlessGrid::CurrentPosition() const {
  if (source_->Bof() || source_->Eof()) return -1;
  return source_->PositionOf(source_->CurrentBookmark()).value_or(-1);
}

}  // namespace tessel::test
