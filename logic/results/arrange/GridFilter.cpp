#include "logic/results/arrange/GridFilter.h"

#include <algorithm>
#include <utility>

#include "logic/results/arrange/FilterText.h"

namespace tessel {

namespace {

constexpr int typingPause = 200;  ///< Milliseconds.

bool IsOf(const std::weak_ptr<Recordset>& kept, const std::shared_ptr<Recordset>& rows) {
  return kept.lock() == rows;
}

}  // namespace

GridFilter::GridFilter(Window& window, DataGrid& grid, GridArranging& arranging)
    : grid_(grid),
      arranging_(arranging),
      fraFilterRows_(window.Find<PictureBox>("fraFilterRows")),
      cboFilterColumn_(window.Find<ComboBox>("cboFilterColumn")),
      txtFilterRows_(window.Find<TextBox>("txtFilterRows")),
      chkFilterRegex_(window.Find<CheckBox>("chkFilterRegex")),
      cmdCloseFilter_(window.Find<Button>("cmdCloseFilter")),
      labFiltered_(window.Find<Label>("labFiltered")) {
  txtFilterRows_.Change = [this] { Apply(typingPause); };
  cboFilterColumn_.Click = [this] {
    if (!txtFilterRows_.Text().empty()) Apply(0);
  };
  chkFilterRegex_.Click = [this] {
    if (!txtFilterRows_.Text().empty()) Apply(0);
  };
  cmdCloseFilter_.Click = [this] { Close(); };
}

// --- the line ------------------------------------------------------------------------------------

void GridFilter::Open() {
  if (grid_.DataSource() == nullptr) return;
  if (!IsOpen()) {
    ListColumns();
    ShowLine(true);
    ShowCount();
  }
  txtFilterRows_.SetFocus();
  txtFilterRows_.Select(0, txtFilterRows_.Text().size());
}

void GridFilter::ShowLine(bool visible) {
  if (fraFilterRows_.Visible() == visible) return;
  fraFilterRows_.SetVisible(visible);
  if (moved) moved();
}

void GridFilter::Close() {
  if (!IsOpen()) return;
  const bool hadFocus = HasFocus();
  filling_ = true;
  txtFilterRows_.SetText("");
  filling_ = false;
  ShowLine(false);
  Remember();
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows != nullptr && (arranging_.Works() || !rows->Arrangement().conditions.empty()))
    arranging_.Filter({}, 0);
  if (hadFocus && grid_.Visible()) grid_.SetFocus();
}

bool GridFilter::HasFocus() const {
  return txtFilterRows_.HasFocus() || cboFilterColumn_.HasFocus() || chkFilterRegex_.HasFocus() ||
         cmdCloseFilter_.HasFocus();
}

/// Down or Enter goes to the rows, Esc closes the line.
bool GridFilter::TakeKey(int keyCode, int shift) {
  if (!IsOpen() || shift != shiftState::none || !HasFocus()) return false;
  if (keyCode == key::escape) {
    Close();
    return true;
  }
  const bool goes = keyCode == key::enter || keyCode == key::down;
  if (!goes || !txtFilterRows_.HasFocus()) return false;
  grid_.SetFocus();
  return true;
}

void GridFilter::ListColumns() {
  filling_ = true;
  const int before = cboFilterColumn_.ListIndex();
  cboFilterColumn_.Clear();
  cboFilterColumn_.AddItem("All columns");
  for (const FieldInfo& field : grid_.DataSource()->Fields()) cboFilterColumn_.AddItem(field.name);
  cboFilterColumn_.SetListIndex(before >= cboFilterColumn_.ListCount() || before < 0 ? 0 : before);
  filling_ = false;
}

// --- filtering -----------------------------------------------------------------------------------

void GridFilter::Apply(int pause) {
  if (filling_ || grid_.DataSource() == nullptr) return;
  const int column = cboFilterColumn_.ListIndex() - 1;
  std::optional<std::size_t> field;
  if (column >= 0) field = static_cast<std::size_t>(column);
  std::vector<RowCondition> conditions;
  try {
    auto condition = ConditionOf(txtFilterRows_.Text(), field, *grid_.DataSource(),
                                 {false, false, chkFilterRegex_.Value()});
    if (condition) conditions.push_back(*std::move(condition));
  } catch (const Error& error) {
    return labFiltered_.SetCaption(error.Description());
  }
  Remember();
  arranging_.Filter(std::move(conditions), pause);
}

/// What was typed goes with its rows.
void GridFilter::Remember() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  std::erase_if(kept_,
                [&](const Kept& kept) { return kept.rows.expired() || IsOf(kept.rows, rows); });
  if (rows != nullptr && IsOpen())
    kept_.push_back(
        {rows, cboFilterColumn_.ListIndex(), txtFilterRows_.Text(), chkFilterRegex_.Value()});
}

void GridFilter::ShowRecordset() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  const auto kept = std::ranges::find_if(
      kept_, [&](const Kept& one) { return rows != nullptr && IsOf(one.rows, rows); });
  const bool filtered = kept != kept_.end();
  if (rows != nullptr) ListColumns();
  filling_ = true;
  txtFilterRows_.SetText(filtered ? kept->text : "");
  chkFilterRegex_.SetValue(filtered && kept->isRegex);
  if (rows != nullptr) cboFilterColumn_.SetListIndex(filtered ? kept->column : 0);
  filling_ = false;
  ShowLine(filtered);
  ShowCount();
  if (filtered && !kept->text.empty() && rows->Arrangement().conditions.empty()) Apply(0);
}

void GridFilter::ShowCount() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  if (rows == nullptr || (rows->State() & objectState::open) == 0) return;
  const bool hides = !rows->Arrangement().conditions.empty();
  labFiltered_.SetCaption(hides ? std::to_string(rows->RecordCount()) + " of " +
                                      std::to_string(rows->FullCount())
                                : "");
}

}  // namespace tessel
