#pragma once

#include <string>
#include <string_view>

#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/schema/SchemaOrigin.h"
#include "logic/schema/SchemaTree.h"

namespace tessel {

/// The name by which the schema file of a connection was known first, and is read when there is
/// none under the newer one: what the connection string calls the database, without folders, and
/// ".schema.xml". Empty when it names none.
[[nodiscard]] std::string SchemaFileName(std::string_view connectionString);

/// The schema as an XML document: a `Database` element, in it a `Table` element for each table, in
/// it a `Column` element for each field, each with the attribute `name`. Without a declaration. An
/// origin and the time of saving, in UTC, stand as attributes of `Database` when they are given.
/// What is known of the structure stands with it, in attributes and elements of its own. Raises
/// Error(application) for what SchemaFile would not read back.
[[nodiscard]] std::string SchemaToXML(const Schema& schema, const SchemaOrigin& origin = {},
                                      const std::string& saved = {},
                                      const Structure& structure = {});

/// Reads such a document into `schema`. `Table` elements are found at any depth, and a `Column`
/// belongs to the innermost `Table` around it; those without a name are skipped with what they
/// hold. `origin` and `structure` get what the document tells of them. False when `text` is no XML
/// document; raises Error(application) for what no schema would hold.
[[nodiscard]] bool SchemaFromXML(std::string_view text, Schema& schema,
                                 SchemaOrigin* origin = nullptr, Structure* structure = nullptr);

/// Writes the tables and fields of a database node to a file and reads them back.
class SchemaFile {
 public:
  /// All of them outlive this object.
  SchemaFile(const Global& global, dlgAsync& async, SchemaTree& tree)
      : global_(global), help_(global), async_(async), tree_(tree) {}

  /// Replaces the file, whole or not at all. A failure is shown when `showErrors`.
  void SaveSchemaXML(const std::string& path, const std::string& databaseKey, bool showErrors,
                     const SchemaOrigin& origin = {});
  /// Replaces what hangs on the database node; a failure, shown when `showMessages`, leaves it as
  /// it was. Serves the interface while the fields of many tables come; cancelling keeps those that
  /// are there.
  void LoadSchemaXML(const std::string& databaseKey, const std::string& path, bool showMessages);
  /// The same, silently; a file that tells another origin is left alone.
  void LoadSchemaXMLOf(const SchemaOrigin& origin, const std::string& databaseKey,
                       const std::string& path);

 private:
  /// What a file holds.
  struct SchemaContent {
    Schema schema;
    SchemaOrigin origin;
    Structure structure;
  };

  [[nodiscard]] bool Read(const std::string& path, SchemaContent& content) const;
  void Lay(const std::string& databaseKey, SchemaContent content);
  void Notice(bool show, const std::string& text, MessageIcon icon) const;

  const Global& global_;
  Help help_;
  dlgAsync& async_;
  SchemaTree& tree_;
};

}  // namespace tessel
