#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Geometry.h"
#include "contract/base/Keys.h"

namespace tessel::test {

/// The kinds of control that a form's widgets stand for.
enum class ControlKind {
  None,
  Label,
  PictureBox,
  Button,
  CheckBox,
  OptionButton,
  TextBox,
  RichTextBox,
  HexBox,
  ImageBox,
  ComboBox,
  ListBox,
  ListView,
  TreeView,
  DataGrid,
  ProgressBar,
  ChartBox,
  DiagramBox,
};

/// Properties of a form's element as the texts that stand in the file.
class FormProperties {
 public:
  void Set(const std::string& name, std::string value) { values_[name] = std::move(value); }
  [[nodiscard]] std::string Text(const std::string& name, std::string_view fallback = {}) const;
  [[nodiscard]] bool Flag(const std::string& name, bool fallback) const;
  [[nodiscard]] int Number(const std::string& name, int fallback) const;

 private:
  std::map<std::string, std::string> values_;
};

/// One control of a form.
struct FormWidget {
  std::string name;
  std::string className;  ///< As in the file, a promoted class taken back to the one it extends.
  ControlKind kind = ControlKind::None;
  std::string container;  ///< Name of the picture box around it; empty when the window itself is.
  FormProperties properties;
  Rect bounds;                       ///< Twips.
  std::vector<std::string> items;    ///< Of a list or combo box.
  std::vector<std::string> columns;  ///< Captions, of a list view.
};

struct FormShortcut {
  int keyCode = 0;
  int shift = shiftState::none;
};

/// One menu command, title or separator of a form.
struct FormMenuItem {
  std::string name;
  std::string caption;
  FormProperties properties;
  std::optional<FormShortcut> shortcut;
  bool isTitle = false;
  bool inMenuBar = false;            ///< A title that stands in the menu bar.
  std::vector<std::string> entries;  ///< Names of what a title holds, in order.
};

/// What a form file (.ui) says about a window.
struct FormFile {
  std::string name;
  FormProperties properties;        ///< Of the window itself.
  Rect bounds;                      ///< Twips.
  std::vector<FormWidget> widgets;  ///< In the order of the file; a container before what it holds.
  std::vector<FormMenuItem> menus;  ///< In the order of the file, actions behind titles.
  std::vector<std::string> tabStops;  ///< Names in the order of the Tab key.

  /// The names of the forms in `folder`, sorted.
  [[nodiscard]] static std::vector<std::string> NamesIn(const std::string& folder);
  /// Reads `folder`/`name`.ui. Raises Error(itemNotFound) when there is no such form, and
  /// std::runtime_error when the file is damaged or holds a widget of a class that is no control.
  [[nodiscard]] static FormFile Read(const std::string& folder, std::string_view name);
};

/// "Ctrl+Shift+F5" as key code and shift state; raises std::runtime_error for an unknown key.
[[nodiscard]] FormShortcut ParseShortcut(std::string_view text);

}  // namespace tessel::test
