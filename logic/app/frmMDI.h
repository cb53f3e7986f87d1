#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/sql/SqlDialect.h"
#include "logic/app/DroppedFiles.h"
#include "logic/app/Sidebar.h"
#include "logic/app/WindowMenu.h"
#include "logic/connections/dlgConnect.h"
#include "logic/plan/Explain.h"
#include "logic/plan/diagram/Diagram.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/program/view/ViewSettings.h"
#include "logic/query/completion/vocab.h"
#include "logic/query/frmMain.h"
#include "logic/results/frmRecords.h"
#include "logic/schema/SchemaBrowser.h"
#include "logic/tags/TagsPanel.h"
#include "logic/together/AllConnections.h"

namespace tessel {

/// The program's one top-level window: it holds the query window, a records window for each
/// connection, and the sidebar, and sends the query window's SQL to the records windows.
class frmMDI : private QueryHost,
               private RecordsHost,
               private SchemaHost,
               private TagsHost,
               private ConnectionOpener {
 public:
  frmMDI(const Global& global, Vocabulary& vocabulary, TagStore& tags);
  ~frmMDI();

  /// Shows the frame with the query window, and opens the saved-connections dialog once.
  void Show();

  /// Number of open records windows.
  [[nodiscard]] int RecordsWindowCount() const { return recordsWindowCount_; }
  [[nodiscard]] int GetNextID() override { return ++nextID_; }
  /// Sends the query window's selected SQL to every records window, in the order in which they were
  /// opened.
  void DoSQL(bool preview) override;
  /// Selects the statement that the query window's caret is in, and runs it.
  void DoStatement();
  /// Runs the query window's selected SQL on all records windows that take part at once.
  void DoSQLAtOnce(bool preview);
  /// Shows the plan of the query window's selected SQL on the active connection, or else the first.
  void ExplainSQL();
  /// Shows the tables of the database that is selected in the schema browser, or else the first.
  void ShowDiagram();
  void mnuNewInstance_Click() override;
  void mnuWindowSidebar_Click() override { sidebar_.Toggle(); }
  void mnuWindowTileHoriz_Click() override { Arrange(Tiling::Horizontal); }
  void mnuWindowTileVert_Click() override { Arrange(Tiling::Vertical); }
  void mnuWindowTabs_Click() override;
  void mnuWindowMaximize_Click() override;
  void mnuHelpContents_Click() override { help_.ShowContents(); }
  void mnuHelpIndex_Click() override { help_.ShowIndex(); }
  void mnuHelpShortcuts_Click() override;
  void mnuHelpAbout_Click() override;
  void ConfirmTagValueSync() { tagsPanel_.ConfirmTagValueSync(); }

  [[nodiscard]] Window& TheWindow() { return *window_; }
  [[nodiscard]] frmMain& QueryWindow() { return *main_; }
  /// The records windows in the order in which they were opened.
  [[nodiscard]] std::vector<frmRecords*> RecordsWindows() const;

 private:
  void WireMenus();
  void WireFileMenu();
  void WireDatabaseMenu();
  void WireEdit();
  void WireWindowMenu();
  void MDIForm_Load();
  void MDIForm_Unload();
  void mnuDBConnect_Click();
  void mnuEditVocab_Click();
  void mnuEditWordWrap_Click();
  void MDIForm_KeyDown(KeyEvent& event);

  void Arrange(Tiling tiling);
  void ShowResults();
  void ShowNextStep();
  void ChooseWindow(std::size_t index);
  [[nodiscard]] std::vector<Window*> DocumentWindows() const;
  [[nodiscard]] bool AskWhichInstance();
  [[nodiscard]] bool AskToContinue(frmRecords& failed);
  [[nodiscard]] std::optional<std::string> SelectedSQL();
  [[nodiscard]] bool SomeTakePart();
  [[nodiscard]] frmRecords* WindowToExplainOn() const;
  [[nodiscard]] SqlDialect DialectInUse() const;
  void ShowFailureOf(const std::vector<frmRecords*>& windows);
  void ConnectToFile(const std::string& path);

  // QueryHost
  void FocusFirstRecordsWindow() override;
  void FocusBrowser() override;
  // RecordsHost
  void CountRecordsWindow(int change) override;
  void AddDatabaseNode(const std::string& key, const std::string& text,
                       std::optional<Color> mark) override {
    browser_.AddDatabaseNode(key, text, mark);
  }
  void NameDatabaseNode(const std::string& key, const std::string& text) override {
    browser_.NameDatabaseNode(key, text);
  }
  void RemoveDatabaseNode(const std::string& key) override { browser_.RemoveDatabaseNode(key); }
  void LoadSchema(const std::string& key, const std::shared_ptr<Connection>& connection,
                  bool fromDatabase) override {
    browser_.LoadSchema(key, connection, fromDatabase);
  }
  void FollowCatalog(const std::string& key, const std::shared_ptr<Connection>& connection,
                     bool fromDatabase) override {
    browser_.FollowCatalog(key, connection, fromDatabase);
  }
  void FocusQueryWindow() override;
  void ImportRecords(frmRecords& window) override;
  void ShowStatements(frmRecords& window) override { allConnections_.ShowStatements(window); }
  void ForgetStatements(frmRecords& window) override { allConnections_.ForgetStatements(window); }
  void ShowChart(frmRecords& window) override;
  void ListWindowsIn(Window& window) override { windowMenu_.List(window); }
  void WireWindowMenu(Window& window) override;
  bool HandleFrameKey(int keyCode, int shift) override;
  [[nodiscard]] bool SidebarShown() const override { return sidebar_.Shown(); }
  void InsertText(std::string_view text) override { main_->InsertText(text); }
  std::string GetTagValue(const std::string& name, bool parenthesised, bool quoted) override {
    return tagsPanel_.GetTagValue(name, parenthesised, quoted);
  }
  DataGrid* RowsForTags() override { return allConnections_.RowsForTags(); }
  std::vector<NamedRows> RowsOfAll() override { return allConnections_.RowsOnShow(); }
  // SchemaHost
  void ImportRecords(const std::string& databaseKey, const std::string& table) override;
  [[nodiscard]] std::shared_ptr<Connection> ConnectionOf(int windowNumber) override;
  // ConnectionOpener
  bool OpenRecordsWindow(const SavedConnection& connection, const std::string& userName,
                         const std::string& password, bool loadSchemaFromDB) override;
  void TellListNotSaved(const std::string& reason) override;
  void ForgetRecordsWindow(frmRecords* closed);
  void OfferTakingPart();

  const Global& global_;
  Vocabulary& vocabulary_;
  Help help_;
  std::unique_ptr<Window> window_;
  Sidebar sidebar_;
  ViewSettings settings_;
  dlgAsync async_;
  int nextID_ = 0;
  int recordsWindowCount_ = 0;
  std::unique_ptr<frmMain> main_;
  DroppedFiles droppedFiles_;
  SchemaBrowser browser_;
  TagsPanel tagsPanel_;
  Explain explain_;
  Diagram diagram_;
  AllConnections allConnections_;  ///< The records windows use it while they close.
  WindowMenu windowMenu_;
  std::vector<std::unique_ptr<frmRecords>> records_;
  Tiling tiling_ = Tiling::Horizontal;                           ///< As the user tiled last.
  std::shared_ptr<const void> alive_ = std::make_shared<int>();  ///< Deferred work checks it.
};

}  // namespace tessel
