#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/BulkLoad.h"
#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/import/ImportMapping.h"
#include "logic/import/ImportTarget.h"
#include "logic/import/guessing/ImportScan.h"
#include "logic/program/Global.h"
#include "logic/program/dlgAsync.h"

namespace tessel {

/// A table that was made for the rows.
struct ImportedTable {
  std::string listed;  ///< As the schema browser lists it.
  std::vector<std::string> columns;
};

/// The dialog that brings records from a file or the clipboard into a table: it shows what was
/// guessed of the source, takes what the user says of it, and loads. It looks through the source in
/// slices of a few milliseconds, and loads by an operation of the connection; either can be
/// cancelled, and the dialog stays open until that has ended.
class dlgImport {
 public:
  /// `async` outlives it.
  dlgImport(const Global& global, dlgAsync& async);
  ~dlgImport();
  dlgImport(const dlgImport&) = delete;
  dlgImport& operator=(const dlgImport&) = delete;

  /// Shows it above `owner` until it is closed; `table`, as it is listed, is proposed. What was
  /// made; nothing when no table was.
  std::optional<ImportedTable> Go(Window& owner, const std::shared_ptr<Connection>& connection,
                                  const std::string& table);

 private:
  enum class State { Idle, Scanning, Loading };

  void Wire();
  void WireColumns();
  void cmdFile_Click();
  void cmdClipboard_Click();
  void cmdImport_Click();
  void cmdCancel_Click();
  void Form_QueryUnload(bool& refuse);

  [[nodiscard]] bool TakeSource(ImportSource source);
  [[nodiscard]] bool TakeFile(const std::string& path);
  void txtSource_KeyDown(KeyEvent& event);
  [[nodiscard]] bool SourceIsTyped() const;
  bool TakeTypedSource();
  void ProposeTable();
  void ShowFormat();
  void TakeFormat();
  void StartScan();
  void StepScan();
  [[nodiscard]] bool NeedsFirstLookOnly() const;
  void EndScan(const std::string& problem);
  void ShowFirst();

  void TakeTypedTable();
  void TakeTable();
  [[nodiscard]] bool TableIsThere() const { return listedTable_.has_value(); }
  void Map();
  void ShowColumns();
  void ShowColumn();
  void TakeName();
  void TakeType();
  [[nodiscard]] std::optional<std::size_t> SelectedColumn() const;

  [[nodiscard]] LoadRequest MakeRequest();
  void ShowLoadProgress();
  void EndLoad();
  void CancelLoad();
  [[nodiscard]] std::string FailureText() const;
  [[nodiscard]] bool LeavesTable() const;
  [[nodiscard]] std::string RateText(std::int64_t records) const;

  void Enter(State state);
  void EnableControls();
  void ShowStatus(const std::string& text) { lblStatus_.SetCaption(text); }
  void ShowProgress(double done);

  const Global& global_;
  dlgAsync& async_;
  std::unique_ptr<Window> window_;
  TextBox& txtSource_;
  ComboBox& cboDelimiter_;
  ComboBox& cboEncoding_;
  ComboBox& cboDecimal_;
  TextBox& txtNull_;
  CheckBox& chkHeader_;
  ComboBox& cboTable_;
  Label& lblKnown_;
  ListView& lsvColumns_;
  ComboBox& cboName_;
  ComboBox& cboType_;
  DataGrid& grdFirst_;
  CheckBox& chkBatches_;
  CheckBox& chkAsFile_;
  Label& lblStatus_;
  ProgressBar& prgProgress_;
  Button& cmdImport_;
  Button& cmdCancel_;
  Timer& tmrTable_;  ///< Runs while a name is being typed that is a table's so far.

  State state_ = State::Idle;
  bool showing_ = false;  ///< Controls are being filled: what they raise is no doing of the user.
  std::optional<ImportTarget> target_;
  std::optional<ImportSource> source_;
  std::string sourceText_;  ///< What the box showed of it; another text there was typed.
  ImportFormat format_;
  std::unique_ptr<ImportScan> scan_;
  std::optional<std::string> listedTable_;  ///< The table, when it is there.
  std::vector<TableColumn> tableColumns_;   ///< Its columns.
  ImportMapping mapping_;
  std::shared_ptr<ImportFeed> feed_;
  std::shared_ptr<LoadOperation> load_;
  std::int64_t start_ = 0;
  bool cancelling_ = false;  ///< The load under way is asked to stop.
  std::optional<ImportedTable> made_;
};

}  // namespace tessel
