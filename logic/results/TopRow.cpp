#include "logic/results/TopRow.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr int margin = 60;
constexpr int betweenGroups = 120;
constexpr int rowHeight = 420;
constexpr int narrowestCatalog = 1050;
constexpr int captionMargin = 180;
constexpr int characterWidth = 88;
constexpr int rowMargin = 60;
constexpr int rowCharacterWidth = 105;

struct FormPlace {
  const char* name;
  bool beginsGroup = false;
  bool keepsRoom = false;
};

/// Those that come while the user types stand at the end.
constexpr FormPlace leftPlaces[] = {
    {"cmdHistoryBack"}, {"cmdHistoryForward"},     {"cmdHistoryForwardTags"}, {"cmdRequery", true},
    {"cmdRequeryTags"}, {"cmdProperties"},         {"chkLock", true},         {"chkRecords"},
    {"chkTakesPart"},   {"cmdAccept", true, true}, {"cmdReject", false, true}};
constexpr FormPlace rightPlaces[] = {{"lblRow"},       {"cboResult"},     {"lblTransaction"},
                                     {"lblTimer"},     {"cmdStatements"}, {"cmdCnErrors"},
                                     {"cmdReconnect"}, {"cboCatalog"}};

}  // namespace

std::string RowText(const DataGrid& grid) {
  const std::shared_ptr<Recordset> rows = grid.DataSource();
  if (rows == nullptr || (rows->State() & objectState::open) == 0) return {};
  if (grid.OnNewRow()) return "new row";
  if (rows->RecordCount() == 0 || rows->Bof() || rows->Eof()) return {};
  const std::int64_t position = rows->PositionOf(rows->CurrentBookmark()).value_or(0);
  return "row " + std::to_string(position + 1) + " of " + std::to_string(rows->RecordCount());
}

TopRow::TopRow(Window& window)
    : status_(&window.Find<Control>("txtStatus")),
      row_(&window.Find<Label>("lblRow")),
      transaction_(&window.Find<Label>("lblTransaction")),
      catalog_(&window.Find<Control>("cboCatalog")) {
  const auto itemOf = [&](const FormPlace& place) {
    auto& control = window.Find<Control>(place.name);
    return Item{&control, control.Bounds(), place.beginsGroup, place.keepsRoom};
  };
  for (const FormPlace& place : leftPlaces) left_.push_back(itemOf(place));
  for (const FormPlace& place : rightPlaces) right_.push_back(itemOf(place));
}

/// As long as the text takes no more characters than before its room does.
bool TopRow::ShowRow(const std::string& text) {
  if (text == rowText_) return false;
  const bool sameRoom = text.empty() == rowText_.empty() && text.size() <= rowText_.size();
  rowText_ = text;
  row_->SetCaption(text);
  return !sameRoom;
}

int TopRow::Place(int width) {
  width_ = width;
  rowFits_ = true;
  if (!FitsOneRow()) rowFits_ = false;
  const bool oneRow = rowFits_ || FitsOneRow();
  if (!oneRow) {
    catalogWidth_ = right_.back().home.width;
    Narrow(WidthAtRight() + 2 * margin - width);
    const std::size_t rows = RowsAtRight().size();
    rowFits_ = true;
    rowFits_ = RowsAtRight().size() == rows;
  }
  row_->SetVisible(rowFits_ && !rowText_.empty());
  const int lastLeft = PlaceLeft();
  return PlaceRight(oneRow ? 0 : lastLeft + 1) * rowHeight;
}

bool TopRow::HasFocus() const {
  const auto has = [](const Item& item) { return item.control->HasFocus(); };
  return status_->HasFocus() || std::ranges::any_of(left_, has) || std::ranges::any_of(right_, has);
}

/// The list of catalogs becomes as narrow as it has to.
bool TopRow::FitsOneRow() {
  catalogWidth_ = right_.back().home.width;
  const int others = WidthAtLeft() + 2 * margin;
  Narrow(others + WidthAtRight() - width_);
  return others + WidthAtRight() <= width_;
}

bool TopRow::TakesRoom(const Item& item) const {
  if (item.control == row_) return rowFits_ && !rowText_.empty();
  return item.keepsRoom || item.control->Visible();
}

/// The words are as wide as their texts need to be.
int TopRow::WidthOf(const Item& item) const {
  int wanted = item.home.width;
  if (item.control == catalog_) wanted = catalogWidth_;
  if (item.control == transaction_)
    wanted = captionMargin + static_cast<int>(transaction_->Caption().size()) * characterWidth;
  if (item.control == row_)
    wanted = rowMargin + static_cast<int>(rowText_.size()) * rowCharacterWidth;
  return std::max(std::min(wanted, width_ - 2 * margin), 0);
}

/// From the left margin on.
int TopRow::WidthAtLeft() const {
  int width = 0;
  for (const Item& item : left_)
    if (TakesRoom(item)) width += item.home.width + (item.beginsGroup ? betweenGroups : 0);
  return width;
}

int TopRow::WidthAtRight() const {
  int width = 0;
  for (const Item& item : right_)
    if (TakesRoom(item)) width += WidthOf(item) + margin;
  return width;
}

void TopRow::Narrow(int tooMuch) {
  if (tooMuch > 0) catalogWidth_ = std::max(catalogWidth_ - tooMuch, narrowestCatalog);
}

/// The number of the last row that they take.
int TopRow::PlaceLeft() {
  int row = 0;
  int left = margin;
  for (const Item& item : left_) {
    if (!TakesRoom(item)) continue;
    if (item.beginsGroup && left > margin) left += betweenGroups;
    if (left > margin && left + item.home.width > width_ - margin) {
      ++row;
      left = margin;
    }
    Put(item, left, row);
    left += item.home.width;
  }
  return row;
}

/// The number of the last row that they take, from `row` on.
int TopRow::PlaceRight(int row) {
  const auto rows = RowsAtRight();
  for (const auto& items : rows) PlaceRightRow(items, row++);
  return rows.empty() ? std::max(row - 1, 0) : row - 1;
}

std::vector<std::vector<const TopRow::Item*>> TopRow::RowsAtRight() const {
  std::vector<std::vector<const Item*>> rows;
  int room = 0;
  for (const Item& item : right_) {
    if (!TakesRoom(item)) continue;
    if (rows.empty() || WidthOf(item) + margin > room) {
      rows.emplace_back();
      room = width_ - margin;
    }
    rows.back().push_back(&item);
    room -= WidthOf(item) + margin;
  }
  return rows;
}

void TopRow::PlaceRightRow(const std::vector<const Item*>& items, int row) const {
  int right = width_ - margin;
  for (auto item = items.rbegin(); item != items.rend(); ++item) {
    const int left = right - WidthOf(**item);
    Put(**item, left, row);
    right = left - margin;
  }
}

void TopRow::Put(const Item& item, int left, int row) const {
  const bool ownWidth =
      item.control == row_ || item.control == transaction_ || item.control == catalog_;
  const int width = ownWidth ? WidthOf(item) : item.home.width;
  item.control->SetBounds({left, item.home.top + row * rowHeight, width, item.home.height});
}

}  // namespace tessel
