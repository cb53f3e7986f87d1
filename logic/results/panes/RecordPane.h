#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "logic/results/panes/RecordFields.h"
#include "logic/results/values/CellCommands.h"

namespace tessel {

/// What the panes beside the records ask of the window they belong to.
struct PaneOwner {
  /// Writes what is pending in the record; false when it stays, which has been shown.
  std::function<bool()> leaveRecord;
  /// A field of the record was changed, or a text is being typed into it.
  std::function<void()> changed;
  /// Drops what is being typed, else what is pending; false when there is nothing.
  std::function<bool()> takeBack;
  std::function<void()> focusRecords;
  /// Another pane is shown, or another width: the controls are to be placed anew.
  std::function<void()> placed;
};

/// The current record of the grid as a form: its fields one below another, edited as the grid's
/// cells are. It goes where the grid goes, and the grid goes along when the next or the previous
/// record is asked for here.
class RecordPane {
 public:
  /// All outlive it.
  RecordPane(const Global& global, SqlTarget& sqlWindow, Window& window, const PaneOwner& owner);

  [[nodiscard]] bool Shown() const { return fraRecord_.Visible(); }
  void Show(bool shown);
  /// The grid stands on another record, or its values are others. `row` says which it is.
  void Follow(const std::string& row);
  /// The next record (1) or the previous one (-1); nothing happens where there is none.
  void Step(int step);

  /// Keys while its fields have the keyboard; true when one was taken.
  bool TakeKey(const KeyEvent& event);
  [[nodiscard]] bool HasFocus() const;
  void SetFocus() { fields_.SetFocus(); }
  /// The grid of fields.
  [[nodiscard]] DataGrid& Fields() { return fields_; }

 private:
  void Bind(const std::shared_ptr<Recordset>& rows);
  void StayInValues();
  bool GoBack();
  void LeaveFields();
  void FieldChanged();
  void ShowInGrid();
  [[nodiscard]] bool OnEmptyNewRow() const;
  [[nodiscard]] std::optional<Bookmark> CurrentRecord() const;
  [[nodiscard]] CellCommands::Cell CurrentCell() const;
  [[nodiscard]] const FieldInfo* CurrentField() const;
  bool KeepsKey(int keyCode) const;
  bool TurnOver();

  Help help_;
  const PaneOwner& owner_;
  DataGrid& grid_;
  PictureBox& fraRecord_;
  Label& lblRecord_;
  DataGrid& fields_;
  CellCommands commands_;
  DataFormat sizes_;
  std::shared_ptr<Recordset> rows_;       ///< Whose record is shown; null: none.
  std::shared_ptr<RecordFields> record_;  ///< That record; null: none.
  bool following_ = false;                ///< The grid and the fields are being made to agree.
  std::optional<Bookmark> shown_;         ///< The record itself; nothing: the new one.
};

}  // namespace tessel
