#pragma once

#include <string_view>

namespace tessel {

/// Whose rules a text of SQL is read by. They differ in what is quoted, in comments, and in where a
/// semicolon does not end a statement.
enum class SqlDialect {
  Standard,    ///< What is not known better: plain SQL, with stored routines as SQL/PSM has them.
  PostgreSQL,  ///< With standard_conforming_strings on, as it is by default.
  MariaDB,     ///< MySQL too; with backslashes as escapes and "..." as a string, as by default.
  SQLite,
  SqlServer
};

/// The dialect of a server by what it or its driver calls itself, as in the property "DBMS Name":
/// "PostgreSQL", "MariaDB", "MySQL", "SQLite", "Microsoft SQL Server". The name may hold more than
/// that, and case does not count; Standard for any other. Any thread.
[[nodiscard]] SqlDialect DialectOf(std::string_view dbmsName);

}  // namespace tessel
