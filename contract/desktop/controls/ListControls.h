#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/Control.h"
#include "contract/text/TextLines.h"

namespace tessel {

/// What list box and combo box share. Indices are 0-based; -1 is "none".
/// Entries are plain text, never markup, and several may be the same. An index given to a function
/// is below ListCount(); only SetListIndex takes -1 too.
class ListControl : public Control {
 public:
  using Control::Control;

  /// Entries, whether in sight or not.
  [[nodiscard]] virtual int ListCount() const = 0;
  [[nodiscard]] virtual std::string List(int index) const = 0;
  virtual void AddItem(std::string_view text) = 0;  ///< At the end; raises nothing.
  virtual void Clear() = 0;  ///< Raises nothing; a combo box's text becomes empty.

  /// The selected entry, or -1.
  [[nodiscard]] int ListIndex() const { return ReadIndex(); }
  /// Selects an entry; Click follows when another one becomes selected, by the user or by code.
  /// Selecting none raises nothing. A list box brings the entry into sight.
  void SetListIndex(int index) {
    if (index == ReadIndex()) return;
    WriteIndex(index);
    if (index >= 0) Raise(Click);
  }

  /// ListIndex is the new one already. The entry that is selected, clicked again, raises nothing.
  Event<> Click;

 protected:
  // For a back end: WriteIndex raises nothing; what the user selects is reported by Raise(Click).
  [[nodiscard]] virtual int ReadIndex() const = 0;
  virtual void WriteIndex(int index) = 0;
};

/// A list that stands open, as the one of words to choose from. One entry is selected at a time.
class ListBox : public ListControl {
 public:
  using ListControl::ListControl;

  /// What is shown of a line; asked for when the entry is looked at.
  using ShownText = std::function<std::string(std::string_view line)>;
  /// Clears and adds all of `lines`, shown as they are without `shown`; hundreds of thousands come
  /// without delay. None is selected. Raises nothing. `shown` is kept, and goes for entries that
  /// are added later too, until the next Clear or SetLines; it must always give the same for a
  /// line.
  virtual void SetLines(TextLines lines, ShownText shown) = 0;
  /// The line of an entry; List gives what is shown of it.
  [[nodiscard]] virtual std::string Line(int index) const = 0;

  /// Twips that an entry takes from top to bottom: 195 at the small font it was drawn for. Only of
  /// a box that has entries.
  [[nodiscard]] virtual int RowHeight() const = 0;
  /// Twips that the box needs from side to side to show the longest entry whole while `rows` rows
  /// are in sight. Of very many entries only the longest ones, counted in bytes, are measured.
  [[nodiscard]] virtual int WidthFor(int rows) const = 0;
};

/// A drop-down list, editable or not, as the form says.
class ComboBox : public ListControl {
 public:
  using ListControl::ListControl;

  /// What the box shows: the selected entry, or in an editable one what was typed.
  [[nodiscard]] std::string Text() const { return ReadText(); }
  /// Sets the text. In a box that cannot be edited it selects the entry of that text (Click follows
  /// when the selection changes) and does nothing when there is none; an editable one shows it, and
  /// Change follows.
  void SetText(std::string_view text);

  /// The form's; it never changes. A text that was typed is no entry: none is selected then, even
  /// if there is one that reads the same.
  [[nodiscard]] virtual bool Editable() const = 0;
  virtual void SelectAllText() = 0;  ///< Of an editable box.

  /// The text of an editable box changed: typed, or set by SetText. Selecting an entry puts its
  /// text there too, but raises Click alone.
  Event<> Change;

 protected:
  [[nodiscard]] virtual std::string ReadText() const = 0;
  virtual void WriteText(std::string_view text) = 0;  ///< Of an editable box.
};

}  // namespace tessel
