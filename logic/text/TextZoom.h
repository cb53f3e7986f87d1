#pragma once

#include <string>

#include "contract/desktop/controls/EditorBox.h"
#include "logic/program/view/ViewSettings.h"

namespace tessel {

/// The zoom of a text by keys and by the wheel of the mouse, which is remembered.
class TextZoom {
 public:
  /// Gives the box the zoom that is remembered under `name`. The box outlives it.
  TextZoom(const Global& global, EditorBox& box, std::string name);

  /// Ctrl with plus, minus and 0. True when the key was one of them.
  bool TakeKey(const KeyEvent& event);
  void Larger() { ZoomTo(box_.Zoom() + 1); }
  void Smaller() { ZoomTo(box_.Zoom() - 1); }
  /// The size that the desktop has for texts.
  void Reset() { ZoomTo(0); }

 private:
  void ZoomTo(int steps);
  void Remember() const { settings_.SetNumber(name_, box_.Zoom()); }

  EditorBox& box_;
  ViewSettings settings_;
  std::string name_;
};

}  // namespace tessel
