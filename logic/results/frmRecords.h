#pragma once

// The window that shows the records of one connection, and what the frame asks of it. It owns the
// parts that divide its work: history, conversion, editing, status line, the open transaction.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/DataGrid.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/BlobTransfer.h"
#include "logic/results/RecordEditing.h"
#include "logic/results/RecordsHost.h"
#include "logic/results/StatusLine.h"
#include "logic/results/TopRow.h"
#include "logic/results/arrange/RowTools.h"
#include "logic/results/cells/GridPaste.h"
#include "logic/results/commands/KeyMenu.h"
#include "logic/results/conversions/RecordConversion.h"
#include "logic/results/export/ExportCommand.h"
#include "logic/results/panes/SidePane.h"
#include "logic/results/runs/OpenTransaction.h"
#include "logic/results/runs/QueryHistory.h"
#include "logic/results/runs/ResultChoice.h"
#include "logic/results/runs/RunReport.h"
#include "logic/results/runs/StatementList.h"
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
  /// The colour by which the user tells it from other connections; nothing when he chose none.
  [[nodiscard]] std::optional<Color> Mark() const;
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

  /// The SQL with its tags filled in as they would be to run it, and nothing else: nothing runs.
  /// Nothing when a tag cannot be filled in, which has been shown.
  [[nodiscard]] std::optional<std::string> FillInTags(const std::string& taggedSQL);

  // DoQueryTags in its parts, for who runs SQL in several windows at once.
  /// Fills in the tags and shows the SQL where asked to, and asks what is to become of a change
  /// that is pending. Nothing when the user or a tag stopped it, which has been shown; the rows
  /// stay on show.
  [[nodiscard]] std::optional<PreparedQuery> Prepare(const std::string& taggedSQL,
                                                     bool confirmFirst, int historyPosition);
  /// Runs it to its end, under the progress window. True when it ran to its end.
  bool Execute(const PreparedQuery& query);
  /// Starts it and does not wait; the rows on show go. Null when it could not be started: the
  /// status line says why.
  [[nodiscard]] std::shared_ptr<QueryOperation> Start(const PreparedQuery& query);
  /// Shows what came of the operation that was started last, which has ended `elapsed` milliseconds
  /// after its start. `interrupted`: the user asked it to stop. True when it ran to its end.
  bool Conclude(const PreparedQuery& query, std::int64_t elapsed, bool interrupted);
  /// Milliseconds since the last start.
  [[nodiscard]] std::int64_t Elapsed() const;
  /// Whether its provider can work while others do.
  [[nodiscard]] bool WorksAsynchronously() const { return freeThreaded_; }
  /// What the last run came to.
  [[nodiscard]] const RunReport& LastRun() const { return report_; }
  /// What came of the statements of the last run; null when it had only one, or there was none.
  [[nodiscard]] const std::shared_ptr<const StatementList>& Statements() const {
    return statements_;
  }
  /// Shows other rows of the last run in its grid; false when they are none of it, or those on show
  /// stay.
  bool ShowResult(const std::shared_ptr<Recordset>& rows) { return results_.Choose(rows); }

  /// The values of a field of the rows on show as SQL text: the current row's, or as a list those
  /// of the selected rows (all rows when none is selected). Raises Error(application) when there is
  /// nothing to take.
  [[nodiscard]] std::string GetTagFieldValue(const std::string& fieldName, bool asList,
                                             bool quoted);

  /// Adds a sentence to the status line, on the ground of a failure.
  void AddNotice(std::string_view text);

  /// Focuses the grid, or the status line while the grid is hidden.
  void FocusRecords() override;

  /// Shows the mark by which the user says whether it takes part in what is run on all connections;
  /// it is not shown while this is the only one.
  void OfferTakingPart(bool offer);
  /// Whether SQL that is run on all connections runs here too, as the user ticked.
  [[nodiscard]] bool TakesPart() const { return !chkTakesPart_.Visible() || chkTakesPart_.Value(); }

  /// The rows in its grid; null when it shows none.
  [[nodiscard]] std::shared_ptr<Recordset> RowsOnShow() const {
    return dataGrid_.Visible() ? dataGrid_.DataSource() : nullptr;
  }

  [[nodiscard]] Window& TheWindow() { return *window_; }
  /// What the user calls the connection.
  [[nodiscard]] const std::string& Caption() const { return caption_; }
  [[nodiscard]] const std::shared_ptr<Connection>& TheConnection() const { return mCn_; }
  /// The status line says so when the connection has gone in something beside the window.
  void TellIfLost();
  [[nodiscard]] int WindowID() const { return windowID_; }

  /// Called once, when the window has been unloaded. The owner must not destroy this object before
  /// it returns.
  std::function<void()> onUnloaded;

 private:
  void Form_Load();
  void WireControls();
  [[nodiscard]] bool MayEndSession(OpenTransaction::Session session);
  void Form_Unload();
  void Form_Resize();
  void PlaceGrid(int width, int height);
  void ShowRow();
  [[nodiscard]] PaneOwner OwnerOfPanes();
  void ShowRowText();
  void Form_KeyDown(KeyEvent& event);
  bool HandleKey(int keyCode, int shift);
  [[nodiscard]] RowTools::Host RowToolsHost();
  [[nodiscard]] PasteHost HostOfPasting();
  [[nodiscard]] std::int64_t PasteRows(std::int64_t count,
                                       const std::function<bool(std::int64_t)>& step);
  void Tell(const std::string& text, bool isCount);
  bool HandleControlKey(int keyCode);
  bool HandleControlShiftKey(int keyCode);
  bool HandleControlAltKey(int keyCode);
  bool HandlePlainKey(int keyCode);
  bool FlipTakesPart();

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
  void ShowMarks();

  [[nodiscard]] std::optional<SubstitutedText> Preprocess(const std::string& taggedSQL);
  [[nodiscard]] std::optional<PreparedQuery> LetPass(PreparedQuery query);
  bool ShowOutcome(const PreparedQuery& query, bool interrupted);
  void ShowRowsOf(const PreparedQuery& query, const std::shared_ptr<Recordset>& recordset);
  void ReportFailure(const Error& error);
  void ReportBrokenFetch(const Recordset& recordset, const Error& error);
  bool ReportNoRows(std::int64_t recordsAffected, bool interrupted);
  void ReportErrors();
  [[nodiscard]] std::vector<std::string> ShownErrors() const;
  bool ConfirmSQL(std::string& sql);
  void ShowRecordset(const std::shared_ptr<Recordset>& recordset);
  [[nodiscard]] bool ShowOtherResult(const std::shared_ptr<Recordset>& recordset);
  void OfferStatements(const PreparedQuery& query);
  void ForgetStatements();
  void EnableRecords(bool on);
  void SetStatus(std::string_view text, Color color,
                 StatusLine::Options options = {false, false, false});
  void UpdateTimer();

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

  const Global& global_;
  dlgAsync& async_;
  RecordsHost& host_;
  Help help_;
  std::unique_ptr<Window> window_;

  Button& cmdCnErrors_;
  Button& cmdStatements_;
  Button& cmdReconnect_;
  Button& cmdAccept_;
  Button& cmdReject_;
  ComboBox& cboCatalog_;
  CheckBox& chkLock_;
  CheckBox& chkRecords_;
  CheckBox& chkTakesPart_;
  TextBox& txtStatus_;
  Label& lblTimer_;
  Label& lblWarning_;
  DataGrid& dataGrid_;
  MenuItem& menuRecords_;
  TopRow topRow_;
  StatusLine status_;
  QueryHistory history_;
  RecordEditing editing_;
  RowTools rowTools_;
  GridPaste paste_;
  OpenTransaction transaction_;
  BlobTransfer blobs_;
  RecordConversion conversion_;
  ExportCommand export_;
  ResultChoice results_;
  SidePane side_;
  KeyMenu keyMenu_;

  int windowID_ = -1;
  std::shared_ptr<Connection> mCn_;
  std::shared_ptr<QueryOperation> query_;            ///< The last one, with all its results.
  std::shared_ptr<const StatementList> statements_;  ///< Of the last one; null: it has only one.
  RunReport report_;
  std::int64_t start_ = 0;  ///< Of the last run, by the clock.
  std::string caption_;
  std::string userName_;
  std::string password_;
  bool freeThreaded_ = false;
  bool choosingCatalog_ = false;
  bool keepsRows_ = false;  ///< The rows outlive the session: a change waits in them.
  int lowered_ = 0;         ///< What stands below the top row is, in twips, when that is folded.
  bool loadSchemaFromDB_ = false;
  std::string catalogInTree_;  ///< Whose tables the schema browser shows.
  bool unloaded_ = false;
};

}  // namespace tessel
