#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/TreeView.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/query/completion/vocab.h"
#include "logic/schema/FieldVocabulary.h"
#include "logic/schema/SchemaFile.h"
#include "logic/schema/SchemaHost.h"
#include "logic/schema/SchemaLoading.h"
#include "logic/schema/SchemaTree.h"
#include "logic/schema/StructureCommands.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

/// The schema browser of the frame's sidebar: the tree of databases, tables and fields, its events,
/// and the pop-up menus that write SQL of it into the query window. What the structure adds is a
/// part of its own.
class SchemaBrowser {
 public:
  /// What it works with; all outlive it.
  struct Surroundings {
    const Global& global;
    Window& frame;
    dlgAsync& async;
    Vocabulary& vocabulary;
    SqlTarget& sqlWindow;
    SchemaHost& host;
  };

  explicit SchemaBrowser(const Surroundings& around);

  void AddDatabaseNode(const std::string& key, const std::string& text,
                       std::optional<Color> mark = {}) {
    tree_.AddDatabase(key, text, mark);
  }
  void NameDatabaseNode(const std::string& key, const std::string& text) {
    tree_.NameDatabase(key, text);
  }
  /// A node that is not there is no error.
  void RemoveDatabaseNode(const std::string& key) { tree_.RemoveDatabase(key); }
  /// Fills the node of a new connection: from the database, and then keeps the schema in its file;
  /// or else from that file, if there is one. A file under the name of earlier versions is read
  /// where there is none.
  void LoadSchema(const std::string& key, const std::shared_ptr<Connection>& connection,
                  bool fromDatabase);
  /// Empties the node of a connection that uses another catalog now, and fills it as LoadSchema
  /// does.
  void FollowCatalog(const std::string& key, const std::shared_ptr<Connection>& connection,
                     bool fromDatabase);
  /// Adds a table that was made, with its fields, to the node of a connection whose schema is
  /// loaded.
  void AddTable(const std::string& key, const std::string& table,
                const std::vector<std::string>& fields);
  void SetFocus() { trvBrowser_.SetFocus(); }
  /// The database that the selected node belongs to, or else the first one; empty without any.
  [[nodiscard]] std::string DatabaseInUse() const;
  [[nodiscard]] std::string CaptionOf(const std::string& key) const {
    return trvBrowser_.Text(key);
  }
  /// What is known of a database's structure; null when nothing is.
  [[nodiscard]] const Structure* StructureOf(const std::string& key) const {
    return tree_.FindStructure(key);
  }

 private:
  using TableText = std::string (*)(const std::string& table, const std::vector<std::string>&,
                                    const NameQuoting& quoting);

  void WireMenus();
  void WireTableMenu();
  void WireTableText(const char* command, TableText text);
  void WireFieldMenu();
  void WireStructure();
  void OnSelected(const std::string& command, NodeKind kind,
                  const std::function<void(const std::string& key)>& action);
  void OnDefinition(const std::string& command);
  void OnDatabase(const char* command,
                  void (SchemaBrowser::*action)(const std::string& key, Connection& connection));

  void trvBrowser_NodeCheck(const std::string& key);
  void trvBrowser_MouseDown(const MouseEvent& event);
  void trvBrowser_MouseUp(const MouseEvent& event);
  void trvBrowser_DblClick();
  void SelectSomeNode();
  void trvBrowser_KeyDown(KeyEvent& event);
  void trvBrowser_KeyUp(KeyEvent& event);
  void TakeNode(const std::string& key);
  [[nodiscard]] std::string NameInSql(const std::string& key) const;
  void PopupMenuOf(const std::string& key, Control* at, int x, int y);

  void mnuDBLoadSchemaFromXML_Click(const std::string& key, Connection& connection);
  void mnuDBSaveSchemaToXML_Click(const std::string& key, Connection& connection);
  void mnuFieldTag_Click(const std::string& key, int flags);
  void mnuFieldBuildVocab_Click(const std::string& key);
  void LoadFromDatabase(const std::string& key, const std::shared_ptr<Connection>& connection);
  [[nodiscard]] std::string KeptFile(const Connection& connection) const;
  [[nodiscard]] std::string FileToRead(const std::string& key, const Connection& connection) const;
  [[nodiscard]] FileDialog& SchemaFileDialog(const std::string& name);
  [[nodiscard]] std::shared_ptr<Connection> ConnectionOf(const std::string& key) const;

  const Global& global_;
  Window& frame_;
  SqlTarget& sqlWindow_;
  SchemaHost& host_;
  TreeView& trvBrowser_;
  SchemaTree tree_;
  SchemaLoading loading_;
  SchemaFile file_;
  FieldVocabulary fieldVocabulary_;
  StructureCommands structure_;
  std::map<std::string, std::string> firstCatalogs_;  ///< Of the connections, by their nodes.
  bool pressedOnNode_ = true;  ///< Not beside one, on its arrow or its check box, with the mouse.
};

}  // namespace tessel
