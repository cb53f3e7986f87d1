#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/program/Global.h"
#include "logic/program/Help.h"
#include "logic/results/export/formats/ExportChoices.h"

namespace tessel {

/// What the user wants to be exported.
struct ExportRequest {
  ExportChoices choices;
  std::size_t what = 0;  ///< Of the rows that were offered.
  std::string path;
};

/// The dialog that asks which rows are to be exported, in which form, and to which file. What is
/// chosen of the form is remembered, also by the next run of the program.
class dlgExport {
 public:
  explicit dlgExport(const Global& global);

  /// `offers` names the rows to choose from, at least one; the first one is proposed. `table` is
  /// proposed as the table's name and, with the format's ending, as the file's; `database` is the
  /// one that the rows came from. Nothing when cancelled.
  [[nodiscard]] std::optional<ExportRequest> Go(Window& owner,
                                                const std::vector<std::string>& offers,
                                                const std::string& table, SqlDialect database);

 private:
  void FillLists();
  void ShowChoices(const ExportChoices& choices);
  [[nodiscard]] ExportChoices Choices() const;
  void FormatChosen();
  void EnableChoices();
  void cmdBrowse_Click();
  void cmdOK_Click();
  [[nodiscard]] bool MayReplace();
  [[nodiscard]] ExportFormat Format() const;
  [[nodiscard]] ComboBox& Combo(std::string_view name) const {
    return window_->Find<ComboBox>(name);
  }
  [[nodiscard]] CheckBox& Check(std::string_view name) const {
    return window_->Find<CheckBox>(name);
  }
  [[nodiscard]] TextBox& Box(std::string_view name) const { return window_->Find<TextBox>(name); }

  const Global& global_;
  Help help_;
  std::unique_ptr<Window> window_;
  std::string ending_;      ///< Of the format chosen last.
  std::string mayReplace_;  ///< A file of which the user said that it may be replaced.
  bool confirmed_ = false;
};

}  // namespace tessel
