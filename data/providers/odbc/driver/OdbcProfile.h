#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/sql/SqlStatements.h"
#include "data/changes/RowStatement.h"
#include "data/providers/odbc/driver/OdbcTypes.h"

namespace tessel::odbc {

/// What to know of one ODBC driver beyond the standard: what it must be told, what it can and
/// cannot do. The defaults are those of a driver that nothing is known of.
struct DriverProfile {
  std::string_view name;  ///< Of the database, for a person.
  /// Parts of the driver's name or library by which it is known, in lower case.
  std::vector<std::string_view> marks = {};

  // --- opening -----------------------------------------------------------------------------------
  struct Key {
    std::string_view name;
    std::string_view value;
  };
  std::vector<Key> defaults = {};   ///< Added unless the connection string has them.
  std::string_view optionKey = {};  ///< A key whose value is a number of bits, and the bits it
  std::uint64_t optionBits = 0;     ///< must hold.
  std::string_view fileKey = {};    ///< The key that names a file which must be there.

  // --- commands ----------------------------------------------------------------------------------
  /// Tells Level, Code, Message of what the statements before it warned of, and how those are
  /// forgotten: the database itself does not do so with every statement.
  std::string_view warningsQuery = {};
  std::string_view warningsReset = {};
  /// Words of commands that ask for what a command before them left behind: warnings are neither
  /// asked for after them nor forgotten before.
  std::vector<std::string_view> looksBackWith = {};
  /// What the driver may run without ever coming back: the first word of such a statement, and
  /// words one of which follows it.
  std::string_view hangsOn = {};
  std::vector<std::string_view> hangsWith = {};
  bool joinsNotices = false;  ///< One record holds several notices: `NOTICE: a;WARNING: b`.
  /// How the database takes a text of several statements apart, where the driver gives one result
  /// for each.
  std::optional<SqlDialect> severalStatements = {};
  /// A count of 0 may belong to a statement that counts nothing, such as CREATE TABLE; an action
  /// that touched no row answers SQL_NO_DATA.
  bool zeroIsNoCount = true;

  // --- results -----------------------------------------------------------------------------------
  bool isSlowToDropResults = false;  ///< It holds them whole; others may be open beside them.
  /// Base table and column are told, also behind an alias. Else each query is looked at: see
  /// FindBaseColumns.
  bool tellsBaseColumns = false;
  std::vector<SQLULEN> madeUpSizes = {};  ///< Column sizes that say nothing.
  std::vector<TypeRule> typeRules = {};
  /// Lists name and column of each unique index, where SQLStatistics tells too little of it.
  /// {schema} and {table} stand for the quoted names.
  std::string_view uniqueIndexQuery = {};

  /// An alias is told as the base column's name: columns are believed where a query can have none.
  bool aliasHidesColumn = false;
  /// Lists the columns of a table that cannot be written. {catalog}, {schema} and {table} stand for
  /// the quoted names.
  std::string_view readOnlyColumnsQuery = {};

  // --- changing rows -----------------------------------------------------------------------------
  struct Server {
    std::string name;
    std::string version;
    std::string quote;          ///< The sign in which it quotes names; a blank: none.
    bool namesCatalog = false;  ///< A catalog may stand before a table that is changed.
  };
  /// How rows are written on a server; null: it cannot be done.
  WriteDialect (*writing)(const Server& server) = nullptr;
  /// Tells 1 while the user's transaction is open, 2 while autocommit is off and none is begun,
  /// else 0; changes nothing. Empty: the database does not tell.
  std::string_view transactionQuery = {};
  std::string_view failedTransactionState = {};  ///< SQLSTATE of that query in one that failed.
  bool takesNumbers = false;    ///< Parameters that are numbers are told apart from texts.
  bool takesArrays = false;     ///< A "?" may have the values of many rows, of any length.
  bool textEndsAtZero = false;  ///< A text with a zero character in it would be cut short.

  // --- catalogs and schema -----------------------------------------------------------------------
  enum class CatalogChange { None, Attribute, Reconnect };
  CatalogChange catalogChange = CatalogChange::Attribute;
  std::string_view catalogKey = "Database";  ///< With Reconnect.
  std::string_view catalogQuery = {};        ///< Lists the catalogs; empty: SQLTables does.
  std::string_view noCatalog = {};           ///< Told when there is no current catalog.
  bool schemaPattern = false;  ///< "%" for all schemas; null would mean the search path.
  bool needsCatalog = false;   ///< Without a catalog the schema of all catalogs would be told.
  std::vector<std::string_view> hiddenSchemas = {};  ///< First letters; shown when asked for.
  bool takesBrackets = true;                         ///< Around names; or it is not known.
  bool canListKeys = true;                           ///< SQLPrimaryKeys and SQLStatistics.
};

/// The profile for a driver's name or library; that of an unknown driver when none fits.
[[nodiscard]] const DriverProfile& ProfileOf(std::string_view driver);

}  // namespace tessel::odbc
