#pragma once

#include <string>
#include <string_view>

#include "contract/base/Properties.h"

namespace tessel {

/// `name` in "[" and "]" when it holds a space or begins with a digit, else as it is.
[[nodiscard]] std::string QuoteIdentifier(std::string_view name);

/// How the names of one database's tables and fields are written in its SQL.
///
/// As QuoteIdentifier writes them, unless the provider tells that its database takes no brackets
/// ("Bracket Identifiers" is 0). A name that SQL would then read as something else (it holds other
/// characters than letters, digits and "_", is a reserved word, or has capitals where the database
/// folds them) stands in the database's own quotes ("Identifier Quote Character"), those inside it
/// doubled.
class NameQuoting {
 public:
  /// As QuoteIdentifier does.
  NameQuoting() = default;
  /// As a connection's provider tells.
  explicit NameQuoting(const Properties& provider);

  /// A name as the database spells it.
  [[nodiscard]] std::string Name(std::string_view name) const;

  /// The text under which the schema browser lists a table that SQL finds only in its schema; of
  /// a table that needs none, with an empty schema. A dot stands between the two; a name that holds
  /// one itself stands in quotes.
  [[nodiscard]] std::string ListedTable(std::string_view schema, std::string_view table) const;
  /// A table as the schema browser lists it: each part by itself.
  [[nodiscard]] std::string Table(std::string_view listed) const;

  /// A table's name as a person wrote it, in a query or alone: what SQL reads as a name stays as it
  /// is, and a name in quotes or brackets gets those that the database takes.
  [[nodiscard]] std::string Written(std::string_view text) const;

 private:
  [[nodiscard]] std::string Quoted(std::string_view name) const;
  [[nodiscard]] std::string Part(std::string_view name) const;
  [[nodiscard]] bool IsFolded(char c) const;

  char quote_ = '\0';          ///< 0: the database takes brackets, or does not tell.
  bool foldsUpper_ = false;    ///< A name without quotes is read in small letters.
  bool foldsLower_ = false;    ///< In capitals.
  bool listsSchemas_ = false;  ///< A dot in a listed table's name divides schema and table.
};

/// The length of the table's name, of one or more parts with dots between, each bare or whole in
/// quotes or brackets, that `text` begins with; 0 when it begins with none.
[[nodiscard]] std::size_t TableNameLength(std::string_view text);

}  // namespace tessel
