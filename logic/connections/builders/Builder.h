#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "contract/base/Color.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/program/Global.h"

namespace tessel {

/// What the four connection-string builders share: a modal dialog that is filled from a connection
/// string and builds a new one from its fields when the user presses OK.
class Builder {
 public:
  Builder(const Global& global, const char* form);
  virtual ~Builder() = default;

  /// Shows the dialog over `owner`. Returns the string built, or the given one, byte for byte,
  /// unless OK was pressed.
  std::string GetCnStr(Window& owner, const std::string& connectionString);

 protected:
  /// Fills the fields.
  virtual void Parse(const std::string& connectionString) = 0;
  /// The string that the fields describe; nothing while a required field is empty: OK then does
  /// nothing.
  [[nodiscard]] virtual std::optional<std::string> Build() const = 0;

  [[nodiscard]] Window& TheWindow() const { return *window_; }
  [[nodiscard]] TextBox& Box(const char* name) const { return window_->Find<TextBox>(name); }
  [[nodiscard]] std::string TextOf(const char* name) const { return Box(name).Text(); }

 private:
  void cmdOK_Click();

  std::unique_ptr<Window> window_;
  std::string result_;
};

/// Button face for a locked field, window background for one that can be edited.
[[nodiscard]] Color EditableBackColor(bool locked);

/// Enables a control for input, or disables it with a grey ground.
void SetEditable(Control& control, bool editable);

}  // namespace tessel
