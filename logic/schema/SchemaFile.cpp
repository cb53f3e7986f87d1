// The schema of a database as an XML document for the schema browser, written and read back, with
// what tells which database it belongs to.

#include "logic/schema/SchemaFile.h"

#include <pugixml.hpp>
#include <utility>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "contract/text/TextCut.h"
#include "logic/connections/text/ConnectionPairs.h"
#include "logic/schema/structure/StructureXml.h"

namespace tessel {

namespace {

constexpr std::string_view ending = ".schema.xml";
constexpr std::uint64_t mostMegabytes = 32;
constexpr std::uint64_t mostBytes = mostMegabytes << 20U;
constexpr std::size_t longestName = 4096;
constexpr std::int64_t tablesAtOnce = 64;  ///< Before the interface has its turn.

/// Takes what the document writes.
class TextWriter final : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size) override {
    text_.append(static_cast<const char*>(data), size);
  }
  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

[[noreturn]] void RaiseTooLarge() {
  RaiseAppError("The file is larger than " + std::to_string(mostMegabytes) + " megabytes.");
}

void RequireReasonable(const std::string& name) {
  if (name.size() > longestName) RaiseAppError("The name of a table or field is too long.");
}

void AppendNamed(pugi::xml_node& element, const std::string& name) {
  RequireReasonable(name);
  element.append_attribute("name").set_value(name.c_str());
}

/// Collects tables and columns in document order. Depths tell which table a column is in; the
/// elements may be nested as deeply as the file likes.
class SchemaWalker final : public pugi::xml_tree_walker {
 public:
  explicit SchemaWalker(Schema& schema) : schema_(schema) {}

  bool for_each(pugi::xml_node& node) override {
    while (!open_.empty() && open_.back().depth >= depth()) open_.pop_back();
    const std::string_view element = node.name();
    if (element == "Table") OpenTable(NameOf(node));
    else if (element == "Column") AddColumn(NameOf(node));
    return true;
  }

 private:
  /// A table element that is being walked; skipped when it has no name.
  struct OpenElement {
    int depth = 0;
    bool skipped = false;
    std::size_t table = 0;
  };

  static std::string NameOf(const pugi::xml_node& node) {
    std::string name = node.attribute("name").value();
    RequireReasonable(name);
    return name;
  }

  void OpenTable(std::string name) {
    open_.push_back({depth(), name.empty(), schema_.size()});
    if (!name.empty()) schema_.push_back({std::move(name), {}});
  }

  void AddColumn(std::string name) {
    if (name.empty() || open_.empty() || open_.back().skipped) return;
    schema_[open_.back().table].fields.push_back(std::move(name));
  }

  Schema& schema_;
  std::vector<OpenElement> open_;
};

}  // namespace

std::string SchemaFileName(std::string_view connectionString) {
  const ConnectionPairs pairs = ParseConnectionString(connectionString);
  std::string name(TrimSpaces(GetConnectionStringValue(
      pairs, {"Initial Catalog", "Database", "DBQ", "Data Source", "DSN", "Server"})));
  KeepAfterLast(name, "\\");
  KeepAfterLast(name, "/");
  return name.empty() ? name : name.append(ending);
}

std::string SchemaToXML(const Schema& schema, const SchemaOrigin& origin, const std::string& saved,
                        const Structure& structure) {
  pugi::xml_document document;
  pugi::xml_node database = document.append_child("Database");
  for (const auto& [attribute, value] :
       {std::pair("saved", &saved), std::pair("provider", &origin.provider),
        std::pair("server", &origin.server), std::pair("database", &origin.database)})
    if (!value->empty()) database.append_attribute(attribute).set_value(value->c_str());
  for (const TableSchema& table : schema) {
    pugi::xml_node tableElement = database.append_child("Table");
    AppendNamed(tableElement, table.name);
    for (const std::string& field : table.fields) {
      pugi::xml_node column = tableElement.append_child("Column");
      AppendNamed(column, field);
    }
    if (const TableFacts* facts = structure.FindTable(table.name))
      WriteTableStructure(tableElement, *facts, structure);
  }
  WriteObjects(database, structure);
  TextWriter text;
  document.save(text, "  ", pugi::format_indent | pugi::format_no_declaration);
  std::string xml = text.Take();
  if (xml.size() > mostBytes) RaiseTooLarge();
  return xml;
}

bool SchemaFromXML(std::string_view text, Schema& schema, SchemaOrigin* origin,
                   Structure* structure) {
  pugi::xml_document document;
  if (!document.load_buffer(text.data(), text.size())) return false;
  SchemaWalker walker(schema);
  pugi::xml_node database = document.document_element();
  database.traverse(walker);
  if (origin != nullptr)
    *origin = {database.attribute("provider").value(), database.attribute("server").value(),
               database.attribute("database").value()};
  if (structure != nullptr) *structure = ReadStructure(database);
  return true;
}

void SchemaFile::SaveSchemaXML(const std::string& path, const std::string& databaseKey,
                               bool showErrors, const SchemaOrigin& origin) {
  try {
    const std::string saved = global_.TheDesktop().TheClock().UtcStamp();
    global_.TheFiles().ReplaceWhole(
        path, SchemaToXML(tree_.Tables(databaseKey), origin, saved, tree_.StructureOf(databaseKey)),
        false);
  } catch (const Error& error) {
    Notice(showErrors, "Error saving schema to XML: " + error.Description(), MessageIcon::Critical);
  }
}

void SchemaFile::LoadSchemaXML(const std::string& databaseKey, const std::string& path,
                               bool showMessages) {
  try {
    SchemaContent content;
    if (Read(path, content)) return Lay(databaseKey, std::move(content));
    Notice(showMessages, "Unable to load schema XML file: " + path, MessageIcon::Exclamation);
  } catch (const Error& error) {
    Notice(showMessages, "Error loading schema from XML: " + error.Description(),
           MessageIcon::Critical);
  }
}

void SchemaFile::LoadSchemaXMLOf(const SchemaOrigin& origin, const std::string& databaseKey,
                                 const std::string& path) {
  try {
    SchemaContent content;
    if (!Read(path, content)) return;
    if (content.origin == SchemaOrigin() || content.origin == origin)
      Lay(databaseKey, std::move(content));
  } catch (const Error&) {
    return;  // The node stays as it is.
  }
}

/// False when the file cannot be read or is no XML document.
bool SchemaFile::Read(const std::string& path, SchemaContent& content) const {
  std::string text;
  try {
    const Files& files = global_.TheFiles();
    if (files.Size(path) > mostBytes) RaiseTooLarge();
    text = files.ReadWhole(path);
  } catch (const Error& error) {
    if (error.Number() == errorNumber::application) throw;
    return false;
  }
  return SchemaFromXML(text, content.schema, &content.origin, &content.structure);
}

void SchemaFile::Lay(const std::string& databaseKey, SchemaContent content) {
  tree_.RefreshDatabase(databaseKey);
  const Schema& schema = content.schema;
  const Structure& structure = tree_.StructureOf(databaseKey) = std::move(content.structure);
  std::vector<std::string> names;
  for (const TableSchema& table : schema) names.push_back(table.name);
  tree_.AddTables(databaseKey, names);
  const auto addFields = [&](std::int64_t i) {
    const TableSchema& table = schema[static_cast<std::size_t>(i)];
    if (!table.fields.empty()) tree_.AddFields(TableNodeKey(databaseKey, table.name), table.fields);
    if (const TableFacts* facts = structure.FindTable(table.name))
      tree_.AddIndexes(databaseKey, *facts);
  };
  async_.ForEach("Reading schema file...", nullptr, static_cast<std::int64_t>(schema.size()),
                 addFields, tablesAtOnce);
  tree_.AddObjects(databaseKey);
  tree_.View().SetExpanded(databaseKey, true);
}

void SchemaFile::Notice(bool show, const std::string& text, MessageIcon icon) const {
  if (show) help_.HelpMsgBoxNotice(text, MessageButtons::Ok, icon);
}

}  // namespace tessel
