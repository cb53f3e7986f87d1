#include "logic/schema/StructureCommands.h"

#include <algorithm>

#include "logic/schema/structure/StructureText.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr const char* typesSetting = "schema types";
constexpr std::size_t mostJoins = 8;  ///< Entries of the menu.
constexpr int definitionContext = 9105;

std::string JoinItem(std::size_t number) { return "mnuTableJoin_" + std::to_string(number); }

/// "&" marks a letter in a menu; doubled it stands for itself.
std::string AsCaption(const std::string& text) {
  std::string caption;
  for (const char c : text) caption.append(c == '&' ? 2U : 1U, c);
  return caption;
}

}  // namespace

StructureCommands::StructureCommands(const Global& global, Window& frame, dlgAsync& async,
                                     SchemaTree& tree, SqlTarget& sqlWindow)
    : global_(global),
      help_(global),
      frame_(frame),
      async_(async),
      tree_(tree),
      sqlWindow_(sqlWindow),
      settings_(global),
      showsTypes_(settings_.Number(typesSetting, 0) != 0) {
  tree_.View().NodeNoted = [this](const std::string& key, NodeNote& note) { NoteNode(key, note); };
}

// --- what nodes tell -----------------------------------------------------------------------------

/// The node of an index hangs on that of its table.
const IndexFacts* StructureCommands::IndexOf(const Structure& structure,
                                             const std::string& key) const {
  const TreeView& view = tree_.View();
  const TableFacts* table = structure.FindTable(view.Text(view.Parent(key)));
  if (table == nullptr) return nullptr;
  const auto found = std::ranges::find(table->indexes, view.Text(key), &IndexFacts::name);
  return found == table->indexes.end() ? nullptr : &*found;
}

void StructureCommands::NoteNode(const std::string& key, NodeNote& note) const {
  const Structure* structure = tree_.FindStructure(tree_.DatabaseOf(key));
  if (structure == nullptr) return;
  const TreeView& view = tree_.View();
  const std::string text = view.Text(key);
  switch (KindOfNode(key)) {
    case NodeKind::Database: note.toolTip = structure->notRead; break;
    case NodeKind::Table: note.toolTip = TableToolTip(*structure, text); break;
    case NodeKind::Field: {
      const std::string table = view.Text(view.Parent(key));
      note.toolTip = FieldToolTip(*structure, table, text);
      if (showsTypes_) note.detail = FieldDetail(*structure, table, text);
      break;
    }
    case NodeKind::Index:
      if (const IndexFacts* index = IndexOf(*structure, key)) {
        note.toolTip = IndexToolTip(*index);
        if (showsTypes_) note.detail = IndexDetail(*index);
      }
      break;
    default: break;
  }
}

void StructureCommands::FlipTypes() {
  showsTypes_ = !showsTypes_;
  settings_.SetNumber(typesSetting, showsTypes_ ? 1 : 0);
  tree_.View().RefreshNotes();
}

// --- definitions ---------------------------------------------------------------------------------

/// Of a table whose structure is not known the name is all there is.
std::vector<std::string> StructureCommands::RestrictionsOf(const std::string& key) const {
  const TreeView& view = tree_.View();
  const bool isIndex = KindOfNode(key) == NodeKind::Index;
  if (const ObjectFacts* object = tree_.ObjectOf(key))
    return {object->object.catalog, object->object.schema, object->object.name, object->type};
  const std::string listed = view.Text(isIndex ? view.Parent(key) : key);
  const Structure* structure = tree_.FindStructure(tree_.DatabaseOf(key));
  const TableFacts* table = structure == nullptr ? nullptr : structure->FindTable(listed);
  const ObjectName object = table == nullptr ? ObjectName{"", "", listed} : table->object;
  if (!isIndex) return {object.catalog, object.schema, object.name, "TABLE"};
  return {object.catalog, object.schema, view.Text(key), "INDEX", object.name};
}

void StructureCommands::ShowDefinition(const std::string& key, Connection& connection) {
  const std::string name = tree_.View().Text(key);
  try {
    const std::shared_ptr<Recordset> rows =
        async_.ReadSchema(connection, SchemaRowset::Definitions, RestrictionsOf(key));
    if (rows == nullptr) return;
    if (rows->RecordCount() == 0) {
      help_.Show("The database keeps no definition of '" + name + "'.", MessageIcon::Information);
      return;
    }
    ViewText(global_, sqlWindow_, ToText(rows->ValueAt(0, 1)),
             {definitionContext, "SQL Files (*.sql)|*.sql", 9600, 6300, false, false,
              "Definition of " + name});
  } catch (const Error& error) {
    connection.ClearErrors();
    help_.Show("The definition of '" + name + "' cannot be read: " + error.Description(),
               MessageIcon::Exclamation);
  }
}

// --- joins ---------------------------------------------------------------------------------------

/// The tables of one database with fields that are ticked, the given one first.
std::vector<TickedTable> StructureCommands::TickedTables(const std::string& firstTable) const {
  std::vector<TickedTable> tables;
  for (const std::string& key : tree_.TableKeys(tree_.DatabaseOf(firstTable))) {
    TickedTable table{tree_.View().Text(key), tree_.CheckedFields(key)};
    if (table.fields.empty()) continue;
    tables.insert(key == firstTable ? tables.begin() : tables.end(), std::move(table));
  }
  return tables;
}

void StructureCommands::OfferJoins(const std::string& tableKey) {
  joins_.clear();
  const Structure* structure = tree_.FindStructure(tree_.DatabaseOf(tableKey));
  if (structure != nullptr)
    joins_ =
        JoinOffers(TickedTables(tableKey), structure->ForeignKeys(), tree_.QuotingOf(tableKey));
  for (std::size_t i = 0; i < mostJoins; ++i) {
    MenuItem& item = frame_.Menu(JoinItem(i));
    item.SetVisible(i < joins_.size());
    if (i < joins_.size()) item.SetCaption(AsCaption(joins_[i].caption));
  }
  frame_.Menu("menuTableJoin").SetEnabled(!joins_.empty());
}

void StructureCommands::InsertJoin(std::size_t number) {
  if (number < joins_.size()) sqlWindow_.InsertText(joins_[number].sql);
}

void StructureCommands::PrepareMenu(const std::string& key) {
  const NodeKind kind = KindOfNode(key);
  frame_.Menu("mnuShowTypes").SetChecked(showsTypes_);
  frame_.Menu("mnuObjectSelect").SetEnabled(kind == NodeKind::View);
  if (kind == NodeKind::Table) OfferJoins(key);
}

}  // namespace tessel
