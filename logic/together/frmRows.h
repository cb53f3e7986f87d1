#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/Global.h"
#include "logic/results/RecordsHost.h"
#include "logic/results/arrange/RowTools.h"
#include "logic/results/conversions/RecordConversion.h"
#include "logic/results/export/ExportCommand.h"

namespace tessel {

/// A window of rows that belong to no single connection, to be read only: the run summary, merged
/// rows, differences. They are copied, converted, sorted, searched, filtered and used in tags as
/// those of a records window are. What only some rows can do shows once it is offered.
class frmRows {
 public:
  /// `async` and `host` outlive this object.
  frmRows(const Global& global, dlgAsync& async, RecordsHost& host);
  ~frmRows();
  frmRows(const frmRows&) = delete;
  frmRows& operator=(const frmRows&) = delete;

  /// Shows the window with open `rows`, in place of those it showed before; `status` is one line
  /// about them.
  void ShowRows(const std::string& caption, std::shared_ptr<Recordset> rows,
                const std::string& status);

  // What the rows can do; each shows its control.
  /// A double click or Enter on a row, or the button: `goTo` gets the row.
  void OfferGoTo(std::function<void(Bookmark)> goTo);
  /// The button that runs again where it failed; it is enabled while `possible`.
  void OfferAgain(std::function<void()> again, bool possible);
  /// The box that makes these rows those that field tags take their values from; `chosen` is called
  /// when it is ticked.
  void OfferTags(std::function<void()> chosen);
  [[nodiscard]] bool TagsChosen() const { return chkTags_.Value(); }
  void ClearTagsChosen() { chkTags_.SetValue(false); }

  [[nodiscard]] DataGrid& Rows() { return dataGrid_; }
  [[nodiscard]] Window& TheWindow() { return *window_; }

  /// Called once, when the window has been unloaded. The owner must not destroy this object before
  /// it returns.
  std::function<void()> onUnloaded;

 private:
  void Form_Unload();
  void Form_KeyDown(KeyEvent& event);
  [[nodiscard]] bool HandleKey(int keyCode, int shift);
  [[nodiscard]] bool HasFocus() const;
  void GoTo();
  [[nodiscard]] RowTools::Host ToolsHost();
  void WireArranging();
  void ShowStatus();

  RecordsHost& host_;
  std::unique_ptr<Window> window_;
  Label& lblStatus_;
  CheckBox& chkTags_;
  Button& cmdAgain_;
  Button& cmdGoTo_;
  DataGrid& dataGrid_;
  RowTools rowTools_;
  RecordConversion conversion_;
  ExportCommand export_;
  std::function<void(Bookmark)> goTo_;
  std::string about_;      ///< The line about the rows.
  std::string arranging_;  ///< How they are arranged; empty: all of them as they came.
  bool unloaded_ = false;
};

}  // namespace tessel
