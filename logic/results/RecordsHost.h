#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/desktop/Window.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

class DataGrid;
class frmRecords;

/// What a records window asks of the frame.
class RecordsHost : public SqlTarget {
 public:
  /// The next window number, from 1; never the same twice.
  virtual int GetNextID() = 0;
  /// One records window more (1) or less (-1).
  virtual void CountRecordsWindow(int change) = 0;
  /// Adds or removes a connection's node in the schema browser, with a stripe in its colour if it
  /// has one; removing one that is not there does
  /// nothing.
  virtual void AddDatabaseNode(const std::string& key, const std::string& text,
                               std::optional<Color> mark) = 0;
  /// Gives that node another text.
  virtual void NameDatabaseNode(const std::string& key, const std::string& text) = 0;
  virtual void RemoveDatabaseNode(const std::string& key) = 0;
  /// Fills that node: from the database when asked to, else from the schema file kept of it.
  virtual void LoadSchema(const std::string& key, const std::shared_ptr<Connection>& connection,
                          bool fromDatabase) = 0;
  /// Fills the node anew, in the same way, when the connection uses another catalog.
  virtual void FollowCatalog(const std::string& key, const std::shared_ptr<Connection>& connection,
                             bool fromDatabase) = 0;
  /// Asks what is to be imported into the database of that window, and does it.
  virtual void ImportRecords(frmRecords& window) = 0;
  virtual void FocusQueryWindow() = 0;
  /// Lists what came of the statements of the last run in that window, which has several.
  virtual void ShowStatements(frmRecords& window) = 0;
  /// That run is over in that window: what is listed of it goes.
  virtual void ForgetStatements(frmRecords& window) = 0;
  /// Draws a chart of the rows on show in that window.
  virtual void ShowChart(frmRecords& window) = 0;
  /// Lists the program's windows in the Window menu of that one, which is about to open, and checks
  /// what holds of them.
  virtual void ListWindowsIn(Window& window) = 0;
  /// Makes the entries of that window's Window menu that concern windows and the sidebar work.
  virtual void WireWindowMenu(Window& window) = 0;
  /// Takes a key that does the same in every window; false for any other.
  virtual bool HandleFrameKey(int keyCode, int shift) = 0;
  /// What a named tag stands for. Raises Error(application) when there is no such tag or it has no
  /// value.
  virtual std::string GetTagValue(const std::string& name, bool parenthesised, bool quoted) = 0;

  /// The rows that field tags take their values from in place of a window's own, as the user chose;
  /// null: there are none.
  [[nodiscard]] virtual DataGrid* RowsForTags() = 0;

  /// The rows that all records windows show, in the order in which these were opened.
  [[nodiscard]] virtual std::vector<NamedRows> RowsOfAll() = 0;

  /// The Window and Help commands of the frame.
  virtual void mnuNewInstance_Click() = 0;
  virtual void mnuWindowSidebar_Click() = 0;
  virtual void mnuWindowTileHoriz_Click() = 0;
  virtual void mnuWindowTileVert_Click() = 0;
  virtual void mnuWindowTabs_Click() = 0;
  virtual void mnuWindowMaximize_Click() = 0;
  virtual void mnuHelpContents_Click() = 0;
  virtual void mnuHelpIndex_Click() = 0;
  virtual void mnuHelpShortcuts_Click() = 0;
  virtual void mnuHelpAbout_Click() = 0;
  [[nodiscard]] virtual bool SidebarShown() const = 0;

 protected:
  ~RecordsHost() = default;
};

}  // namespace tessel
