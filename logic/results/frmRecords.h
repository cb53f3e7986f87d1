#pragma once

// The window that shows the records of one connection, and what the frame asks of it. It owns the
// parts that divide its work: history, conversion, editing, status line, the open transaction.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "contract/desktop/Button.h"
#include "contract/desktop/DataGrid.h"
#include "contract/desktop/Label.h"
#include "contract/desktop/ListControls.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/BlobTransfer.h"
#include "logic/results/OpenTransaction.h"
#include "logic/results/QueryHistory.h"
#include "logic/results/RecordConversion.h"
#include "logic/results/RecordEditing.h"
#include "logic/results/RecordsHost.h"
#include "logic/results/StatusLine.h"
#include "logic/results/TopRow.h"
#include "logic/tags/TagScanner.h"

namespace tessel {

/// What a records window needs to open its connection.
struct ConnectRequest {
  std::string connectionString;
  std::string userName;
  std::string password;
  std::string caption;  ///< Empty: the connection string is the caption.
  bool loadSchemaFromDB = false;
  Color backColor = color::windowBackground;
  Color foreColor = color::windowText;
};

/// Position in the query history that stands for a new query.
inline constexpr int newQuery = -1;

/// A window bound to one connection: it opens it, runs SQL on it and shows the rows, the counts and
/// the errors.
class frmRecords : private QueryRunner, private TagResolver {
 public:
  frmRecords(const Global& global, dlgAsync& async, RecordsHost& host);
  ~frmRecords();
  frmRecords(const frmRecords&) = delete;
  frmRecords& operator=(const frmRecords&) = delete;

  /// Opens the connection and shows the window. False when it failed (the failure has been shown)
  /// or was cancelled; the window is then unloaded.
  bool Connect(const ConnectRequest& request);

  /// Runs SQL as the user gave it, its tags filled in first; shown for review before it runs when
  /// `confirmFirst`. True when it ran to its end. A tag that cannot be filled in is shown, and
  /// nothing runs.
  bool DoQueryTags(const std::string& taggedSQL, bool confirmFirst, int historyPosition);

  /// The values of a field of the rows on show as SQL text: the current row's, or as a list those
  /// of the selected rows (all rows when none is selected). Raises Error(application) when there is
  /// nothing to take.
  [[nodiscard]] std::string GetTagFieldValue(const std::string& fieldName, bool asList,
                                             bool quoted);

  /// Adds a sentence to the status line, on the ground of a failure.
  void AddNotice(std::string_view text);

  /// Focuses the grid, or the status line while the grid is hidden.
  void FocusRecords() override;

  [[nodiscard]] Window& TheWindow() { return *window_; }
  [[nodiscard]] const std::shared_ptr<Connection>& TheConnection() const { return mCn_; }
  [[nodiscard]] int WindowID() const { return windowID_; }

  /// Called once, when the window has been unloaded. The owner must not destroy this object before
  /// it returns.
  std::function<void()> onUnloaded;

 private:
  struct Execution {
    std::string sql;
    std::string taggedSQL;
    bool confirmFirst = false;
    int historyPosition = newQuery;
    int tagKind = 0;
  };

  void Form_Load();
  void WireControls();
  void WireMenus();
  [[nodiscard]] bool MayEndSession(OpenTransaction::Session session);
  void Form_Unload();
  void Form_Resize();
  void PlaceGrid(int width, int height);
  void Form_KeyDown(KeyEvent& event);
  bool HandleKey(int keyCode, int shift);
  bool HandleControlKey(int keyCode);
  bool HandleControlAltKey(int keyCode);

  bool OpenConnection();
  void ListCatalogs();
  void AddOtherCatalogs(const std::string& inUse);
  void FollowCatalog();
  void FollowCommand();
  void cboCatalog_Click();
  [[nodiscard]] bool MayChangeCatalog();
  [[nodiscard]] bool UseCatalog(const std::string& name);
  void cmdReconnect_Click();
  void ShowTransaction();

  [[nodiscard]] std::optional<SubstitutedText> Preprocess(const std::string& taggedSQL);
  bool ExecuteSQL(Execution execution);
  bool Run(const Execution& execution, std::int64_t start);
  void ShowRowsOf(const Execution& execution, const std::shared_ptr<Recordset>& recordset,
                  std::int64_t start);
  void ReportBrokenFetch(const Recordset& recordset, const Error& error);
  bool ReportNoRows(std::int64_t recordsAffected, bool interrupted);
  void ReportErrors();
  bool ConfirmSQL(std::string& sql);
  void ShowRecordset(const std::shared_ptr<Recordset>& recordset);
  void EnableRecords(bool on);
  void SetStatus(std::string_view text, Color color,
                 StatusLine::Options options = {false, false, false});
  void UpdateTimer(std::int64_t start);

  void chkRecords_Click();
  void DataGrid_KeyDown(KeyEvent& event);
  void DataGrid_KeyUp(KeyEvent& event);
  void cmdCnErrors_Click();
  void ShowProperties();

  // QueryRunner
  void RunAgain(const HistoryEntry& entry, bool confirmFirst, int position) override;
  void RunTagged(const HistoryEntry& entry, bool confirmFirst, int position) override;
  void ShowSQL(const std::string& sql) override;
  /// The title of a text window that shows something of this connection.
  [[nodiscard]] std::string TitleOf(const std::string& what) const;
  void ShowLongText(const std::string& text, int helpContext, const std::string& title);
  // TagResolver
  [[nodiscard]] bool Yield() override { return async_.Yield(); }
  [[nodiscard]] std::string Resolve(const Tag& tag) override;
  [[nodiscard]] std::string ListOfValues(Recordset& rows, std::size_t field, bool quoted);

  const Global& global_;
  dlgAsync& async_;
  RecordsHost& host_;
  Help help_;
  std::unique_ptr<Window> window_;

  Button& cmdCnErrors_;
  Button& cmdReconnect_;
  Button& cmdAccept_;
  Button& cmdReject_;
  ComboBox& cboCatalog_;
  CheckBox& chkLock_;
  CheckBox& chkRecords_;
  TextBox& txtStatus_;
  Label& lblTimer_;
  Label& lblWarning_;
  DataGrid& dataGrid_;
  MenuItem& menuRecords_;
  TopRow topRow_;
  StatusLine status_;
  QueryHistory history_;
  RecordEditing editing_;
  OpenTransaction transaction_;
  BlobTransfer blobs_;
  RecordConversion conversion_;

  int windowID_ = -1;
  std::shared_ptr<Connection> mCn_;
  std::shared_ptr<QueryOperation> query_;  ///< The last one, with all its results.
  std::string userName_;
  std::string password_;
  bool freeThreaded_ = false;
  bool choosingCatalog_ = false;
  int lowered_ = 0;  ///< What stands below the top row is, in twips, when that is folded.
  bool loadSchemaFromDB_ = false;
  std::string catalogInTree_;  ///< Whose tables the schema browser shows.
  bool unloaded_ = false;
};

}  // namespace tessel
