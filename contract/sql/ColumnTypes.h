#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "contract/base/Value.h"
#include "contract/sql/SqlDialect.h"

namespace tessel {

// Tables are made for rows that are there already, of a file or of a result. Which type of the
// database a column gets decides whether the rows come back from it as they were.

/// What a column of a new table is to hold.
struct ColumnType {
  DataType type = DataType::VarWChar;  ///< The kind of its values.
  int precision = 0;      ///< Digits in all of an exact decimal; 0: as many as there may be.
  int scale = 0;          ///< Digits behind the point.
  std::int64_t size = 0;  ///< Characters or bytes; 0: no limit.
  bool zoned = false;     ///< Of moments: each tells its offset from UTC.
};

/// Whether a server's own name of a type is that of moments with an offset from UTC, as "timestamp
/// with time zone" or "datetimeoffset". Any thread.
[[nodiscard]] bool IsZonedType(std::string_view typeName);

/// The name of the type of such a column in CREATE TABLE, as "numeric(10,2)". It is one that holds
/// every value of the kind without loss where the database has one: a text that no index is made on
/// has no limit of length. What a database has no type for becomes text. Any thread.
[[nodiscard]] std::string ColumnTypeName(SqlDialect dialect, const ColumnType& column);

/// What stands behind the columns and their parenthesis in CREATE TABLE, with a blank in front, so
/// that the texts of the table hold every character; empty where they do anyway. A database of
/// MariaDB may have a character set of 256 characters, which its new tables take over unless they
/// are told another one. Any thread.
[[nodiscard]] std::string_view TableEnding(SqlDialect dialect);

}  // namespace tessel
