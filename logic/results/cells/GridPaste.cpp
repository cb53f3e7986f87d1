#include "logic/results/cells/GridPaste.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

/// Blanks and line ends around a value count only in a text.
std::string_view Meant(DataType type, std::string_view text) {
  const auto empty = ParseValue(type, "");
  const bool isText = empty && std::holds_alternative<std::string>(*empty);
  if (isText) return text;
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

std::string RowName(std::int64_t row, const std::string& column) {
  return "Row " + std::to_string(row + 1) + ", column '" + column + "': ";
}

}  // namespace

GridPaste::GridPaste(DataGrid& grid, Clipboard& clipboard, PasteHost host)
    : grid_(grid), clipboard_(clipboard), host_(std::move(host)) {
  grid_.Paste = [this](bool& taken) { taken = Paste(); };
}

bool GridPaste::Paste() {
  const std::optional<Place> start = Start();
  TextBlock block = Block();
  if (!start || block.empty()) return false;
  block = FillingSelection(std::move(block));
  if (IsTyped(block)) return false;
  if (const auto refusal = WhyNot(block, *start)) {
    Show(*refusal);
    return true;
  }
  host_.tryTo([&] { Fill(block, *start); });
  return true;
}

// --- what is pasted where ------------------------------------------------------------------------

/// A table without a text that is one comes from its HTML.
TextBlock GridPaste::Block() const {
  const std::string text = clipboard_.Text();
  const bool isBlock = text.find_first_of("\t\n\r") != std::string::npos;
  TextBlock table = isBlock ? TextBlock() : BlockOfHtml(clipboard_.Html());
  const bool hasCells =
      table.size() > 1 || (!table.empty() && (text.empty() || table[0].size() > 1));
  return hasCells ? table : BlockOfText(text);
}

/// Nothing when there is no cell.
std::optional<GridPaste::Place> GridPaste::Start() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows == nullptr || grid_.CurrentColumn() < 0) return std::nullopt;
  const GridCells cells = grid_.SelCells();
  if (!cells.IsEmpty()) return Place{cells.firstRow, cells.firstColumn};
  if (grid_.OnNewRow()) return Place{rows->RecordCount(), grid_.CurrentColumn()};
  if (rows->Bof() || rows->Eof()) return std::nullopt;
  const auto position = rows->PositionOf(rows->CurrentBookmark());
  if (!position) return std::nullopt;
  return Place{*position, grid_.CurrentColumn()};
}

/// A single value goes into the cell as if it were typed, unless blanks would make it another one.
/// A spreadsheet ends also a single cell with a line end, which is no part of it.
bool GridPaste::IsTyped(const TextBlock& block) const {
  if (block.size() != 1 || block[0].size() != 1 || !grid_.SelCells().IsEmpty()) return false;
  const auto column = static_cast<std::size_t>(grid_.CurrentColumn());
  const std::string text = clipboard_.Text();
  return !text.empty() && !text.ends_with('\n') &&
         Meant(grid_.DataSource()->Fields()[column].type, text) == text;
}

/// One value goes into each selected cell.
TextBlock GridPaste::FillingSelection(TextBlock block) const {
  const GridCells cells = grid_.SelCells();
  if (cells.IsEmpty() || block.size() != 1 || block[0].size() != 1) return block;
  const auto columns = static_cast<std::size_t>(cells.lastColumn - cells.firstColumn + 1);
  return TextBlock(static_cast<std::size_t>(cells.lastRow - cells.firstRow + 1),
                   std::vector<std::string>(columns, block[0][0]));
}

// --- whether it may be ---------------------------------------------------------------------------

std::optional<GridPaste::Refusal> GridPaste::WhyNot(const TextBlock& block,
                                                    const Place& start) const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (const auto reason = rows->WhyNotChangeable()) return Refusal{start, reason->description};
  const std::int64_t end = start.row + std::ssize(block);
  if (end > rows->RecordCount() && !grid_.AllowAddNew())
    return Refusal{start, "The block has " + std::to_string(block.size()) +
                              " rows, and there are not so many from this one on."};
  Place at = start;
  for (const auto& row : block) {
    if (auto refusal = WhyNotRow(row, at)) return refusal;
    ++at.row;
  }
  return std::nullopt;
}

std::optional<GridPaste::Refusal> GridPaste::WhyNotRow(const std::vector<std::string>& row,
                                                       const Place& start) const {
  const auto& fields = grid_.DataSource()->Fields();
  if (start.column + std::ssize(row) > grid_.ColumnCount())
    return Refusal{start, "The block has " + std::to_string(row.size()) +
                              " columns, and there are not so many from this one on."};
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Place at{start.row, start.column + static_cast<int>(i)};
    const FieldInfo& field = fields[static_cast<std::size_t>(at.column)];
    if (!field.updatable || grid_.ColumnLocked(at.column))
      return Refusal{at, RowName(at.row, field.name) + "this column cannot be changed."};
    if (!ParseValue(field.type, Meant(field.type, row[i])))
      return Refusal{at, RowName(at.row, field.name) + "'" + row[i] + "' is no value of its type."};
  }
  return std::nullopt;
}

void GridPaste::Show(const Refusal& refusal) {
  grid_.GoToCell(refusal.at.row, refusal.at.column);
  host_.refuse(refusal.reason + "\r\n\r\nNothing was pasted.");
}

// --- filling -------------------------------------------------------------------------------------

void GridPaste::Fill(const TextBlock& block, const Place& start) {
  grid_.EndEdit();
  if (block.size() == 1) {
    if (FillRow(block.front(), start)) host_.changed();
    return;
  }
  const std::int64_t saved = SaveRows(block, start);
  host_.tell(std::to_string(saved) + " of " + std::to_string(block.size()) + " rows pasted.");
  const auto columns = static_cast<int>(block.front().size());
  if (saved == std::ssize(block))
    grid_.SelectCells({start.row, start.row + saved - 1, start.column, start.column + columns - 1});
  else if (grid_.ChangePending()) host_.changed();
}

/// How many were saved: all, unless one of them was refused, the user cancelled or the rows went
/// away.
std::int64_t GridPaste::SaveRows(const TextBlock& block, const Place& start) {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  return host_.forEach(std::ssize(block), [&](std::int64_t i) {
    const Place at{start.row + i, start.column};
    return grid_.DataSource() == rows && FillRow(block[static_cast<std::size_t>(i)], at) &&
           host_.saveChange();
  });
}

/// An empty value leaves a null as it is: that is what a null is copied as. False when a change of
/// another record could not be saved.
bool GridPaste::FillRow(const std::vector<std::string>& row, const Place& start) {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  const bool isNew = start.row >= rows->RecordCount();
  const bool goesOn = isNew ? rows->Editing() == EditMode::Add
                            : !rows->Bof() && !rows->Eof() &&
                                  rows->CurrentBookmark() == rows->BookmarkAt(start.row);
  if (rows->Editing() != EditMode::None && !goesOn && !host_.saveChange()) return false;
  if (isNew && rows->Editing() != EditMode::Add) rows->AddNew();
  if (!isNew) rows->MoveTo(rows->BookmarkAt(start.row));
  for (std::size_t i = 0; i < row.size(); ++i) {
    const auto field = static_cast<std::size_t>(start.column) + i;
    const std::string_view text = Meant(rows->Fields()[field].type, row[i]);
    if (text.empty() && IsNull(rows->FieldValue(field))) continue;
    rows->SetFieldValue(field, Value(std::string(text)));
  }
  grid_.Refresh();
  return true;
}

}  // namespace tessel
