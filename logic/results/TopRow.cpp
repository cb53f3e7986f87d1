#include "logic/results/TopRow.h"

#include <algorithm>

#include "contract/desktop/controls/Label.h"

namespace tessel {

namespace {

constexpr int margin = 60;
constexpr int rowHeight = 360;
constexpr int narrowestCatalog = 1050;
constexpr int captionMargin = 180;
constexpr int characterWidth = 88;

constexpr const char* leftNames[] = {"cmdHistoryBack", "cmdHistoryForward", "cmdHistoryForwardTags",
                                     "cmdRequery",     "cmdRequeryTags",    "cmdProperties",
                                     "chkLock",        "cmdAccept",         "cmdReject",
                                     "chkRecords",     "chkTakesPart"};
constexpr const char* rightNames[] = {"cboResult",   "lblTransaction", "lblTimer",  "cmdStatements",
                                      "cmdCnErrors", "cmdReconnect",   "cboCatalog"};
/// These are seldom there, and not while the user types: they take room while they show only.
constexpr const char* seldomNames[] = {"lblTransaction", "cboCatalog", "chkTakesPart", "cboResult",
                                       "cmdStatements"};

}  // namespace

TopRow::TopRow(Window& window)
    : status_(&window.Find<Control>("txtStatus")),
      transaction_(&window.Find<Control>("lblTransaction")),
      catalog_(&window.Find<Control>("cboCatalog")) {
  const auto itemOf = [&](std::string_view name) {
    auto& control = window.Find<Control>(name);
    return Item{&control, control.Bounds(), std::ranges::count(seldomNames, name) != 0};
  };
  for (const char* name : leftNames) left_.push_back(itemOf(name));
  for (const char* name : rightNames) right_.push_back(itemOf(name));
}

int TopRow::Place(int width) {
  width_ = width;
  catalogWidth_ = right_.back().home.width;
  int leftEnd = 0;
  for (const Item& item : left_)
    if (TakesRoom(item)) leftEnd = item.home.left + item.home.width;
  Narrow(leftEnd + margin + WidthAtRight() + margin - width);
  const bool oneRow = leftEnd + margin + WidthAtRight() + margin <= width;
  if (!oneRow) {
    catalogWidth_ = right_.back().home.width;
    Narrow(WidthAtRight() + 2 * margin - width);
  }
  const int lastLeft = PlaceLeft();
  return PlaceRight(oneRow ? 0 : lastLeft + 1) * rowHeight;
}

bool TopRow::HasFocus() const {
  const auto has = [](const Item& item) { return item.control->HasFocus(); };
  return status_->HasFocus() || std::ranges::any_of(left_, has) || std::ranges::any_of(right_, has);
}

/// Most that come and go keep their place: nothing is to move while the user types.
bool TopRow::TakesRoom(const Item& item) { return !item.isSeldom || item.control->Visible(); }

/// The word is as wide as its text needs to be.
int TopRow::WidthOf(const Item& item) const {
  int wanted = item.home.width;
  if (item.control == catalog_) wanted = catalogWidth_;
  if (const auto* label = dynamic_cast<const Label*>(item.control); item.control == transaction_)
    wanted = captionMargin + static_cast<int>(label->Caption().size()) * characterWidth;
  return std::max(std::min(wanted, width_ - 2 * margin), 0);
}

int TopRow::WidthAtRight() const {
  int width = -margin;
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
  int shift = 0;  // From the place in the form to that in its row.
  for (const Item& item : left_) {
    if (!TakesRoom(item)) continue;
    const bool first = item.home.left + shift <= margin;
    if (!first && item.home.left + shift + item.home.width > width_ - margin) {
      ++row;
      shift = margin - item.home.left;
    }
    Put(item, item.home.left + shift, row);
  }
  return row;
}

/// The number of the last row that they take, from `row` on.
int TopRow::PlaceRight(int row) {
  std::vector<const Item*> together;
  int room = width_ - margin;
  for (const Item& item : right_) {
    if (!TakesRoom(item)) continue;
    if (!together.empty() && WidthOf(item) + margin > room) {
      PlaceRightRow(together, row++);
      together.clear();
      room = width_ - margin;
    }
    together.push_back(&item);
    room -= WidthOf(item) + margin;
  }
  PlaceRightRow(together, row);
  return row;
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
  const bool atRight = item.control == transaction_ || item.control == catalog_;
  const int width = atRight ? WidthOf(item) : item.home.width;
  item.control->SetBounds({left, item.home.top + row * rowHeight, width, item.home.height});
}

}  // namespace tessel
