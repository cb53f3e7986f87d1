#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/TextLines.h"
#include "contract/desktop/Control.h"

namespace tessel {

/// What list box and combo box share. Indices are 0-based; -1 is "none".
class ListControl : public Control {
 public:
  using Control::Control;

  [[nodiscard]] virtual int ListCount() const = 0;
  [[nodiscard]] virtual std::string List(int index) const = 0;
  virtual void AddItem(std::string_view text) = 0;  ///< At the end; raises nothing.
  virtual void Clear() = 0;  ///< Raises nothing; a combo box's text becomes empty.

  [[nodiscard]] int ListIndex() const { return ReadIndex(); }
  /// Selects an entry; Click follows when another one becomes selected, by the user or by code.
  void SetListIndex(int index) {
    if (index == ReadIndex()) return;
    WriteIndex(index);
    if (index >= 0) Raise(Click);
  }

  Event<> Click;

 protected:
  [[nodiscard]] virtual int ReadIndex() const = 0;
  virtual void WriteIndex(int index) = 0;
};

class ListBox : public ListControl {
 public:
  using ListControl::ListControl;

  /// What is shown of a line; asked for when the entry is looked at.
  using ShownText = std::function<std::string(std::string_view line)>;
  /// Clears and adds all of `lines`, shown as they are without `shown`; hundreds of thousands come
  /// without delay. Raises nothing.
  virtual void SetLines(TextLines lines, ShownText shown) = 0;
  /// The line of an entry; List gives what is shown of it.
  [[nodiscard]] virtual std::string Line(int index) const = 0;

  /// Twips that an entry takes from top to bottom: 195 at the small font it was drawn for.
  [[nodiscard]] virtual int RowHeight() const = 0;
  /// Twips that the box needs from side to side to show the longest entry whole while `rows` rows
  /// are in sight. Of very many entries only the longest ones, counted in bytes, are measured.
  [[nodiscard]] virtual int WidthFor(int rows) const = 0;
};

/// A drop-down list, editable or not, as the form says.
class ComboBox : public ListControl {
 public:
  using ListControl::ListControl;

  [[nodiscard]] std::string Text() const { return ReadText(); }
  /// Sets the text. In a box that cannot be edited it selects the entry of that text (Click follows
  /// when the selection changes) and does nothing when there is none; an editable one shows it, and
  /// Change follows.
  void SetText(std::string_view text);

  [[nodiscard]] virtual bool Editable() const = 0;
  virtual void SelectAllText() = 0;  ///< Of an editable box.

  Event<> Change;  ///< The text of an editable box changed.

 protected:
  [[nodiscard]] virtual std::string ReadText() const = 0;
  virtual void WriteText(std::string_view text) = 0;  ///< Of an editable box.
};

}  // namespace tessel
