// What the user does in the schema browser: expanding and checking nodes, the pop-up menus and
// their commands, and the SQL that goes to the query window. The nodes themselves are kept and
// loaded elsewhere.

#include "logic/schema/SchemaBrowser.h"

#include "logic/program/FileDialogs.h"
#include "logic/schema/sql/SqlGeneration.h"
#include "logic/tags/TagScanner.h"

namespace tessel {

namespace {

constexpr int menuFromNode = 300;  ///< Twips from a node's left edge to the menu that a key opens.

constexpr std::size_t joinsOffered = 8;  ///< Entries of the menu of joins.
constexpr int formsOfTag = 4;            ///< The number of a tag command is the tag's flags.

const char* MenuOf(NodeKind kind) {
  switch (kind) {
    case NodeKind::Database: return "menuDB";
    case NodeKind::Table: return "menuTable";
    case NodeKind::Field: return "menuField";
    default: return "menuObject";
  }
}

bool IsObject(NodeKind kind) {
  return kind == NodeKind::View || kind == NodeKind::Index || kind == NodeKind::Routine;
}

/// A routine is listed with the types of its arguments.
std::string WithoutArguments(const std::string& routine) {
  return routine.substr(0, routine.find('('));
}

std::string TableNameText(const std::string& table, const std::vector<std::string>& /*fields*/,
                          const NameQuoting& quoting) {
  return quoting.Table(table);
}

std::string FieldNamesText(const std::string& /*table*/, const std::vector<std::string>& fields,
                           const NameQuoting& quoting) {
  return CheckedFieldList(fields, ", ", {}, quoting);
}

std::string WhereText(const std::string& /*table*/, const std::vector<std::string>& fields,
                      const NameQuoting& quoting) {
  return TableWhereText(fields, quoting);
}

}  // namespace

SchemaBrowser::SchemaBrowser(const Surroundings& around)
    : global_(around.global),
      frame_(around.frame),
      sqlWindow_(around.sqlWindow),
      host_(around.host),
      trvBrowser_(around.frame.Find<TreeView>("trvBrowser")),
      tree_(trvBrowser_, around.vocabulary),
      loading_(around.global, around.async, tree_),
      file_(around.global, around.async, tree_),
      fieldVocabulary_(around.global, around.async, around.vocabulary, around.sqlWindow),
      structure_(around.global, around.frame, around.async, tree_, around.sqlWindow) {
  trvBrowser_.NodeCheck = [this](const std::string& key) { trvBrowser_NodeCheck(key); };
  trvBrowser_.MouseDown = [this](const MouseEvent& event) { trvBrowser_MouseDown(event); };
  trvBrowser_.MouseUp = [this](const MouseEvent& event) { trvBrowser_MouseUp(event); };
  trvBrowser_.DblClick = [this] { trvBrowser_DblClick(); };
  trvBrowser_.GotFocus = [this] { SelectSomeNode(); };
  trvBrowser_.KeyDown = [this](KeyEvent& event) { trvBrowser_KeyDown(event); };
  trvBrowser_.KeyUp = [this](KeyEvent& event) { trvBrowser_KeyUp(event); };
  WireMenus();
}

void SchemaBrowser::LoadSchema(const std::string& key,
                               const std::shared_ptr<Connection>& connection, bool fromDatabase) {
  tree_.UseQuoting(key, *connection);
  firstCatalogs_.try_emplace(key, connection->DefaultDatabase());
  if (fromDatabase) return LoadFromDatabase(key, connection);
  const std::string path = FileToRead(key, *connection);
  if (!path.empty()) file_.LoadSchemaXMLOf(OriginOf(*connection), key, path);
}

void SchemaBrowser::FollowCatalog(const std::string& key,
                                  const std::shared_ptr<Connection>& connection,
                                  bool fromDatabase) {
  tree_.RefreshDatabase(key);
  LoadSchema(key, connection, fromDatabase);
}

/// Where no schema is loaded one table would be taken for all.
void SchemaBrowser::AddTable(const std::string& key, const std::string& table,
                             const std::vector<std::string>& fields) {
  if (trvBrowser_.Children(key).empty()) return;
  tree_.AddTables(key, {table});
  tree_.AddFields(TableNodeKey(key, table), fields);
}

/// Only a schema that was read whole is kept.
void SchemaBrowser::LoadFromDatabase(const std::string& key,
                                     const std::shared_ptr<Connection>& connection) {
  loading_.LoadSchemaFromDB(key, connection);
  if (!loading_.Complete()) return;
  const std::string path = KeptFile(*connection);
  if (!path.empty()) file_.SaveSchemaXML(path, key, false, OriginOf(*connection));
}

/// Empty for a connection string that names no database.
std::string SchemaBrowser::KeptFile(const Connection& connection) const {
  if (SchemaFileName(connection.ConnectionString()).empty()) return {};
  return global_.BesideExecutable(SchemaFileNameOf(OriginOf(connection)));
}

/// The kept file, or where there is none the one under its earlier name, which is that of the
/// catalog a connection begins with.
std::string SchemaBrowser::FileToRead(const std::string& key, const Connection& connection) const {
  const std::string kept = KeptFile(connection);
  if (kept.empty() || global_.TheFiles().FileExists(kept)) return kept;
  if (firstCatalogs_.at(key) != connection.DefaultDatabase()) return {};
  return global_.BesideExecutable(SchemaFileName(connection.ConnectionString()));
}

std::string SchemaBrowser::DatabaseInUse() const {
  const std::string selected = tree_.DatabaseOf(trvBrowser_.SelectedKey());
  if (!selected.empty()) return selected;
  const std::vector<std::string> databases = trvBrowser_.Children("");
  return databases.empty() ? std::string() : databases.front();
}

/// The connection of the records window whose database a node belongs to; null when it is gone.
std::shared_ptr<Connection> SchemaBrowser::ConnectionOf(const std::string& key) const {
  return host_.ConnectionOf(WindowNumberOf(tree_.DatabaseOf(key)));
}

// --- the tree's events ---------------------------------------------------------------------------

void SchemaBrowser::trvBrowser_NodeCheck(const std::string& key) {
  pressedOnNode_ = false;  // It was the check box: a second press checks again.
  if (KindOfNode(key) == NodeKind::Table) tree_.CheckFields(key, trvBrowser_.Checked(key));
}

void SchemaBrowser::trvBrowser_MouseDown(const MouseEvent& event) {
  const std::string key = trvBrowser_.NodeAt(event.x, event.y);
  pressedOnNode_ = event.button == MouseButton::Left && !key.empty() &&
                   event.x >= trvBrowser_.NodeBounds(key).left;
}

void SchemaBrowser::trvBrowser_MouseUp(const MouseEvent& event) {
  if (event.button == MouseButton::Right)
    PopupMenuOf(trvBrowser_.NodeAt(event.x, event.y), nullptr, 0, 0);
}

void SchemaBrowser::trvBrowser_DblClick() {
  if (pressedOnNode_) TakeNode(trvBrowser_.SelectedKey());
}

/// Keys act on the selected node, so the first one is where none is.
void SchemaBrowser::SelectSomeNode() {
  if (!trvBrowser_.SelectedKey().empty()) return;
  const std::vector<std::string> databases = trvBrowser_.Children("");
  if (!databases.empty()) trvBrowser_.SelectNode(databases.front());
}

/// Nodes may have come or gone while the tree had the keyboard: a key that moves finds one all the
/// same.
void SchemaBrowser::trvBrowser_KeyDown(KeyEvent& event) {
  if (event.keyCode >= key::pageUp && event.keyCode <= key::down) SelectSomeNode();
  if (event.shift != shiftState::none) return;
  if (event.keyCode == key::enter) TakeNode(trvBrowser_.SelectedKey());
  else if (event.keyCode == key::f7) host_.FocusQueryWindow();
  else return;
  event.handled = true;
}

void SchemaBrowser::trvBrowser_KeyUp(KeyEvent& event) {
  const std::string key = trvBrowser_.SelectedKey();
  if (event.keyCode != key::contextMenu || key.empty()) return;
  event.handled = true;
  const Rect node = trvBrowser_.NodeBounds(key);
  PopupMenuOf(key, &trvBrowser_, node.left + menuFromNode, node.top + node.height);
}

/// Puts a node's name into the query window. The node's state is inverted, which undoes what a
/// double click does to it by itself.
void SchemaBrowser::TakeNode(const std::string& key) {
  if (key.empty()) return;
  trvBrowser_.SetExpanded(key, !trvBrowser_.Expanded(key));
  if (KindOfNode(key) == NodeKind::Group) return;
  sqlWindow_.InsertText(NameInSql(key));
  host_.FocusQueryWindow();
}

/// A database's caption is no name of SQL; it is quoted as one that has a blank.
std::string SchemaBrowser::NameInSql(const std::string& key) const {
  const std::string name = trvBrowser_.Text(key);
  const NameQuoting& quoting = tree_.QuotingOf(key);
  switch (KindOfNode(key)) {
    case NodeKind::Table:
    case NodeKind::View: return quoting.Table(name);
    case NodeKind::Routine: return quoting.Name(WithoutArguments(name));
    default: return quoting.Name(name);
  }
}

void SchemaBrowser::PopupMenuOf(const std::string& key, Control* at, int x, int y) {
  if (key.empty()) return;
  trvBrowser_.SelectNode(key);
  if (KindOfNode(key) == NodeKind::Group) return;
  structure_.PrepareMenu(key);
  frame_.PopupMenu(frame_.Menu(MenuOf(KindOfNode(key))), at, x, y);
}

// --- the menus -----------------------------------------------------------------------------------

void SchemaBrowser::WireMenus() {
  OnDatabase("mnuDBLoadSchemaFromXML", &SchemaBrowser::mnuDBLoadSchemaFromXML_Click);
  OnDatabase("mnuDBSaveSchemaToXML", &SchemaBrowser::mnuDBSaveSchemaToXML_Click);
  OnSelected("mnuDBLoadSchemaFromDB", NodeKind::Database, [this](const std::string& key) {
    if (const auto connection = ConnectionOf(key)) LoadFromDatabase(key, connection);
  });
  OnSelected("mnuDBImport", NodeKind::Database,
             [this](const std::string& key) { host_.ImportRecords(key, ""); });
  WireTableMenu();
  WireFieldMenu();
  WireStructure();
}

void SchemaBrowser::WireStructure() {
  for (const char* command : {"mnuTableDefinition", "mnuObjectDefinition"}) OnDefinition(command);
  frame_.Menu("mnuShowTypes").Click = [this] { structure_.FlipTypes(); };
  frame_.Menu("mnuObjectName").Click = [this] {
    const std::string key = trvBrowser_.SelectedKey();
    if (IsObject(KindOfNode(key))) sqlWindow_.InsertText(NameInSql(key));
  };
  OnSelected("mnuObjectSelect", NodeKind::View, [this](const std::string& key) {
    sqlWindow_.InsertText(TableSelectText(trvBrowser_.Text(key), {}, tree_.QuotingOf(key)));
  });
  for (std::size_t i = 0; i < joinsOffered; ++i)
    OnSelected("mnuTableJoin_" + std::to_string(i), NodeKind::Table,
               [this, i](const std::string& /*key*/) { structure_.InsertJoin(i); });
}

void SchemaBrowser::OnDefinition(const std::string& command) {
  frame_.Menu(command).Click = [this] {
    const std::string key = trvBrowser_.SelectedKey();
    const NodeKind kind = KindOfNode(key);
    if (kind != NodeKind::Table && !IsObject(kind)) return;
    if (const auto connection = ConnectionOf(key)) structure_.ShowDefinition(key, *connection);
  };
}

void SchemaBrowser::WireTableMenu() {
  WireTableText("mnuTableName", &TableNameText);
  WireTableText("mnuTableFieldNames", &FieldNamesText);
  WireTableText("mnuTableSelect", &TableSelectText);
  WireTableText("mnuTableCount", &TableCountText);
  WireTableText("mnuTableInsert", &TableInsertText);
  WireTableText("mnuTableUpdate", &TableUpdateText);
  WireTableText("mnuTableDelete", &TableDeleteText);
  WireTableText("mnuTableWhere", &WhereText);
  OnSelected("mnuTableImport", NodeKind::Table, [this](const std::string& key) {
    host_.ImportRecords(tree_.DatabaseOf(key), trvBrowser_.Text(key));
  });
}

void SchemaBrowser::WireTableText(const char* command, TableText text) {
  OnSelected(command, NodeKind::Table, [this, text](const std::string& key) {
    sqlWindow_.InsertText(
        text(trvBrowser_.Text(key), tree_.CheckedFields(key), tree_.QuotingOf(key)));
  });
}

void SchemaBrowser::WireFieldMenu() {
  OnSelected("mnuFieldName", NodeKind::Field,
             [this](const std::string& key) { sqlWindow_.InsertText(NameInSql(key)); });
  OnSelected("mnuFieldMinMax", NodeKind::Field, [this](const std::string& key) {
    const std::string table = trvBrowser_.Text(trvBrowser_.Parent(key));
    sqlWindow_.InsertText(FieldMinMaxText(table, trvBrowser_.Text(key), tree_.QuotingOf(key)));
  });
  OnSelected("mnuFieldBuildVocab", NodeKind::Field,
             [this](const std::string& key) { mnuFieldBuildVocab_Click(key); });
  for (int flags = 0; flags < formsOfTag; ++flags)
    OnSelected("mnuFieldTag_" + std::to_string(flags), NodeKind::Field,
               [this, flags](const std::string& key) { mnuFieldTag_Click(key, flags); });
}

/// The command acts on the selected node, and only on one of its kind.
void SchemaBrowser::OnSelected(const std::string& command, NodeKind kind,
                               const std::function<void(const std::string&)>& action) {
  frame_.Menu(command).Click = [this, kind, action] {
    const std::string key = trvBrowser_.SelectedKey();
    if (KindOfNode(key) == kind) action(key);
  };
}

void SchemaBrowser::OnDatabase(const char* command,
                               void (SchemaBrowser::*action)(const std::string&, Connection&)) {
  OnSelected(command, NodeKind::Database, [this, action](const std::string& key) {
    if (const auto connection = ConnectionOf(key)) (this->*action)(key, *connection);
  });
}

void SchemaBrowser::mnuDBLoadSchemaFromXML_Click(const std::string& key, Connection& connection) {
  const std::string name = SchemaFileName(connection.ConnectionString());
  FileDialog& dialog = SchemaFileDialog(name.empty() ? "*.schema.xml" : name);
  if (!ShowOpenFileDialog(dialog, global_.TheFiles(), false)) return;
  tree_.UseQuoting(key, connection);
  file_.LoadSchemaXML(key, dialog.fileName, true);
}

void SchemaBrowser::mnuDBSaveSchemaToXML_Click(const std::string& key, Connection& connection) {
  const SchemaOrigin origin = OriginOf(connection);
  FileDialog& dialog = SchemaFileDialog(ProposedSchemaFileName(origin.database));
  if (ShowSaveFileDialog(dialog, global_.TheFiles(), false))
    file_.SaveSchemaXML(dialog.fileName, key, true, origin);
}

/// The frame's file dialog, ready to ask in the program's folder for a schema file.
FileDialog& SchemaBrowser::SchemaFileDialog(const std::string& name) {
  FileDialog& dialog = frame_.FileDialogNamed("dlgCommon");
  dialog.fileName = global_.BesideExecutable(name);
  dialog.filter = "Schema Files (*.schema.xml)|*.schema.xml";
  dialog.defaultExtension = "schema.xml";
  return dialog;
}

void SchemaBrowser::mnuFieldTag_Click(const std::string& key, int flags) {
  sqlWindow_.InsertText(MakeTagText(trvBrowser_.Text(key), flags, tagType::field));
}

void SchemaBrowser::mnuFieldBuildVocab_Click(const std::string& key) {
  const auto connection = ConnectionOf(key);
  if (connection == nullptr) return;
  const std::string table = trvBrowser_.Text(trvBrowser_.Parent(key));
  fieldVocabulary_.Build(key, table, trvBrowser_.Text(key), tree_.QuotingOf(key), connection);
}

}  // namespace tessel
