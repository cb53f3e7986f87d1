#pragma once

#include <string>

#include "contract/base/Geometry.h"
#include "logic/program/view/ViewSettings.h"
#include "logic/results/panes/RecordPane.h"
#include "logic/results/values/ValueLook.h"

namespace tessel {

/// What stands beside the grid of a records window, when the user wants it: the current record as a
/// form, and below it the value of the current cell. Its left edge is dragged to another width,
/// which is remembered.
class SidePane {
 public:
  /// All outlive it.
  SidePane(const Global& global, SqlTarget& sqlWindow, Window& window, PaneOwner owner);

  /// Takes its part of the room that the grid had alone, and gives what is left. Twips.
  [[nodiscard]] Rect Place(const Rect& room);
  /// The grid is bound to other rows, stands on another cell, or shows other values. `row` says on
  /// which record it stands.
  void Follow(const std::string& row);

  /// What a key of the window that concerns it does; true when it was one.
  bool TakeCommand(int keyCode, int shift);
  /// Keys while it has the keyboard; true when one was taken.
  bool TakeKey(const KeyEvent& event);
  /// The grid of the record's fields, in which its changes are typed.
  [[nodiscard]] DataGrid& Fields() { return record_.Fields(); }

 private:
  void WireEdge();
  void fraSide_MouseMove(const MouseEvent& event);
  void ShowRecord(bool shown);
  void ShowValuePane(bool shown);
  void ShowParts();
  void FollowValue();
  [[nodiscard]] LookedAt CurrentCell() const;
  [[nodiscard]] ValueView CurrentValue() const;
  [[nodiscard]] bool ValueShown() const { return fraValue_.Visible(); }
  [[nodiscard]] bool HasFocus() const;

  PaneOwner owner_;
  ViewSettings settings_;
  DataGrid& grid_;
  PictureBox& fraSide_;
  PictureBox& fraValue_;
  RecordPane record_;
  ValueLook value_;
  std::string row_;        ///< Which record the grid stands on, in words.
  int width_;              ///< As the user wants it, in twips.
  Rect room_;              ///< Of the grid and this, as it was given last.
  bool dragging_ = false;  ///< The left button went down on the edge.
};

}  // namespace tessel
