#include "logic/results/values/CellCommands.h"

#include <utility>

#include "contract/base/Error.h"
#include "contract/base/Keys.h"
#include "logic/results/values/frmValue.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr int cellTextContext = 8602;
constexpr int cellTextWidth = 9600;
constexpr int cellTextHeight = 6300;
constexpr const char* cellTextFilter =
    "Common Files|*.txt;*.xml;*.html;*.htm|HTML Files (*.html,*.htm)|*.html;*.htm|"
    "XML Files (*.xml)|*.xml";

}  // namespace

CellCommands::CellCommands(const Global& global, SqlTarget& sqlWindow, DataGrid& grid,
                           std::function<Cell()> cell, std::function<void()> changed)
    : global_(global),
      help_(global),
      sqlWindow_(sqlWindow),
      grid_(grid),
      cell_(std::move(cell)),
      changed_(std::move(changed)) {}

bool CellCommands::TakeKey(int keyCode, int shift) {
  if (shift == shiftState::none) return TakePlainKey(keyCode);
  if (shift != shiftState::ctrl) return false;
  switch (keyCode) {
    case 'A': grid_.SelectCellText(); return true;
    case '0': EnterNull(); return true;
    default: return false;
  }
}

bool CellCommands::TakePlainKey(int keyCode) {
  switch (keyCode) {
    case key::f2:
      if (grid_.AllowUpdate()) grid_.EditCell();
      return true;
    case key::f3: View(); return true;
    case key::f4:
      if (grid_.AllowUpdate()) EditInWindow();
      return true;
    default: return false;
  }
}

void CellCommands::EnterNull() {
  if (grid_.CanEditCell()) help_.TryTo([this] { grid_.SetCellValue(Value()); });
}

ValueView CellCommands::CurrentValue() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  const int column = grid_.CurrentColumn();
  if (rows == nullptr || column < 0 || rows->Bof() || rows->Eof()) return {};
  if (grid_.OnNewRow() && rows->Editing() != EditMode::Add) return {};
  return rows->FieldValue(static_cast<std::size_t>(column));
}

/// Bytes have a window of their own.
void CellCommands::View() {
  if (!std::holds_alternative<BinaryView>(CurrentValue())) return ViewText();
  ShowValue(global_, {[this] { return CurrentValue(); }, cell_().name});
}

void CellCommands::ViewText() {
  std::string text = grid_.CellText();
  ShowCellText(text, false);
}

/// Nothing is offered for editing that could not be written.
void CellCommands::EditInWindow() {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  const FieldInfo* field = cell_().field;
  if (rows == nullptr || field == nullptr) return;
  if (!field->updatable && !rows->WhyNotChangeable()) return ViewText();
  if (const auto reason = rows->WhyNotChangeable())
    return help_.Show(reason->description, MessageIcon::Exclamation);
  EditInWindow(rows);
}

/// A text confirmed as it was changes nothing: a null stays one.
void CellCommands::EditInWindow(const std::shared_ptr<Recordset>& rows) {
  const std::string before = grid_.CellText();
  std::string text = before;
  if (!ShowCellText(text, true) || text == before || grid_.DataSource() != rows) return;
  if (help_.TryTo([&] { grid_.SetCellText(text); })) changed_();
}

bool CellCommands::ShowCellText(std::string& text, bool editable) {
  TextViewOptions options{cellTextContext, cellTextFilter, cellTextWidth, cellTextHeight,
                          editable,        true,           cell_().name};
  options.structured = true;
  return ShowText(global_, sqlWindow_, text, options);
}

}  // namespace tessel
