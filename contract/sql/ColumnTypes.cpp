// The names that databases give to the types of columns. A table that is made from rows, whether
// from a file or from a result, takes them from here, so that rows come back as they were.

#include "contract/sql/ColumnTypes.h"

#include <algorithm>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

/// Kinds of values between which CREATE TABLE tells apart.
enum class Kind {
  Flag,
  Small,
  Whole,
  Long,
  Natural,
  Single,
  Double,
  Exact,
  Date,
  Time,
  Stamp,
  Guid,
  Bytes,
  Text
};

Kind KindOf(DataType type) {
  switch (type) {
    case DataType::Boolean: return Kind::Flag;
    case DataType::TinyInt:
    case DataType::UnsignedTinyInt:
    case DataType::SmallInt: return Kind::Small;
    case DataType::UnsignedSmallInt:
    case DataType::Integer: return Kind::Whole;
    case DataType::UnsignedInt:
    case DataType::BigInt: return Kind::Long;
    case DataType::UnsignedBigInt: return Kind::Natural;
    case DataType::Single: return Kind::Single;
    case DataType::Double: return Kind::Double;
    case DataType::Currency:
    case DataType::Decimal:
    case DataType::Numeric: return Kind::Exact;
    case DataType::DBDate: return Kind::Date;
    case DataType::DBTime: return Kind::Time;
    case DataType::Date:
    case DataType::DBTimeStamp: return Kind::Stamp;
    case DataType::Guid: return Kind::Guid;
    case DataType::Binary:
    case DataType::VarBinary:
    case DataType::LongVarBinary: return Kind::Bytes;
    default: return Kind::Text;
  }
}

/// What has no type for a moment with its offset keeps it as a text.
Kind KindIn(SqlDialect dialect, const ColumnType& column) {
  const Kind kind = KindOf(column.type);
  const bool isMoment = kind == Kind::Time || kind == Kind::Stamp;
  const bool lacks =
      dialect == SqlDialect::MariaDB || (dialect == SqlDialect::SqlServer && kind == Kind::Time);
  return isMoment && column.zoned && lacks ? Kind::Text : kind;
}

std::string Sized(const char* name, std::int64_t size) {
  return std::string(name) + "(" + std::to_string(size) + ")";
}

/// `most` digits are the most that the database takes.
std::string Exact(const char* name, const ColumnType& column, int most, int mostScale) {
  const int scale = std::clamp(column.scale, 0, mostScale);
  const int precision = std::clamp(column.precision == 0 ? most : column.precision, scale, most);
  return std::string(name) + "(" + std::to_string(std::max(precision, 1)) + "," +
         std::to_string(scale) + ")";
}

std::string PostgresName(Kind kind, const ColumnType& column) {
  constexpr int mostDigits = 1000;
  switch (kind) {
    case Kind::Flag: return "boolean";
    case Kind::Small: return "smallint";
    case Kind::Whole: return "integer";
    case Kind::Long: return "bigint";
    case Kind::Natural: return "numeric(20,0)";
    case Kind::Single: return "real";
    case Kind::Double: return "double precision";
    case Kind::Exact:
      return column.precision == 0 ? "numeric" : Exact("numeric", column, mostDigits, mostDigits);
    case Kind::Date: return "date";
    case Kind::Time: return column.zoned ? "time with time zone" : "time";
    case Kind::Stamp: return column.zoned ? "timestamp with time zone" : "timestamp";
    case Kind::Guid: return "uuid";
    case Kind::Bytes: return "bytea";
    case Kind::Text: return "text";
  }
  return "text";
}

/// Fractions of a second are kept. A text without a limit takes 4 GB.
std::string MariaName(Kind kind, const ColumnType& column) {
  constexpr int mostDigits = 65;
  constexpr int mostScale = 38;
  constexpr std::int64_t mostCharacters = 16'000;  // Of a row's 65535 bytes.
  const bool isShort = column.size > 0 && column.size <= mostCharacters;
  switch (kind) {
    case Kind::Flag: return "boolean";
    case Kind::Small: return "smallint";
    case Kind::Whole: return "int";
    case Kind::Long: return "bigint";
    case Kind::Natural: return "bigint unsigned";
    case Kind::Single: return "float";
    case Kind::Double: return "double";
    case Kind::Exact: {
      ColumnType limited = column;
      if (limited.precision == 0 && limited.scale == 0) limited.scale = mostScale / 2;
      return Exact("decimal", limited, mostDigits, mostScale);
    }
    case Kind::Date: return "date";
    case Kind::Time: return "time(6)";
    case Kind::Stamp: return "datetime(6)";
    case Kind::Guid: return "char(36)";
    case Kind::Bytes: return isShort ? Sized("varbinary", column.size) : "longblob";
    case Kind::Text: return isShort ? Sized("varchar", column.size) : "longtext";
  }
  return "longtext";
}

/// The words of a type say what becomes of its values: an exact number with more digits than one of
/// double precision has would lose them, so it is kept as text.
std::string SqliteName(Kind kind, const ColumnType& column) {
  constexpr int mostDigits = 15;
  const bool fits = column.precision > 0 && column.precision <= mostDigits;
  switch (kind) {
    case Kind::Flag: return "boolean";
    case Kind::Small: return "smallint";
    case Kind::Whole: return "integer";
    case Kind::Long: return "bigint";
    case Kind::Natural: return "text";
    case Kind::Single: return "real";
    case Kind::Double: return "double";
    case Kind::Exact: return fits ? Exact("numeric", column, mostDigits, mostDigits) : "text";
    case Kind::Date: return "date";
    case Kind::Time: return "time";
    case Kind::Stamp: return "timestamp";
    case Kind::Bytes: return "blob";
    case Kind::Guid:
    case Kind::Text: return "text";
  }
  return "text";
}

std::string ServerName(Kind kind, const ColumnType& column) {
  constexpr int mostDigits = 38;
  constexpr std::int64_t mostCharacters = 4000;
  const bool isShort = column.size > 0 && column.size <= mostCharacters;
  switch (kind) {
    case Kind::Flag: return "bit";
    case Kind::Small: return "smallint";
    case Kind::Whole: return "int";
    case Kind::Long: return "bigint";
    case Kind::Natural: return "decimal(20,0)";
    case Kind::Single: return "real";
    case Kind::Double: return "float";
    case Kind::Exact: return Exact("decimal", column, mostDigits, mostDigits);
    case Kind::Date: return "date";
    case Kind::Time: return "time";
    case Kind::Stamp: return column.zoned ? "datetimeoffset" : "datetime2";
    case Kind::Guid: return "uniqueidentifier";
    case Kind::Bytes: return isShort ? Sized("varbinary", column.size) : "varbinary(max)";
    case Kind::Text: return isShort ? Sized("nvarchar", column.size) : "nvarchar(max)";
  }
  return "nvarchar(max)";
}

/// What most databases understand.
std::string StandardName(Kind kind, const ColumnType& column) {
  constexpr int mostDigits = 38;
  constexpr std::int64_t usualLength = 4000;
  switch (kind) {
    case Kind::Flag: return "boolean";
    case Kind::Small: return "smallint";
    case Kind::Whole: return "integer";
    case Kind::Long: return "bigint";
    case Kind::Natural: return "numeric(20,0)";
    case Kind::Single: return "real";
    case Kind::Double: return "double precision";
    case Kind::Exact: return Exact("numeric", column, mostDigits, mostDigits);
    case Kind::Date: return "date";
    case Kind::Time: return column.zoned ? "time with time zone" : "time";
    case Kind::Stamp: return column.zoned ? "timestamp with time zone" : "timestamp";
    case Kind::Guid: return "char(36)";
    case Kind::Bytes: return Sized("varbinary", column.size == 0 ? usualLength : column.size);
    case Kind::Text: return Sized("varchar", column.size == 0 ? usualLength : column.size);
  }
  return "varchar(4000)";
}

}  // namespace

bool IsZonedType(std::string_view typeName) {
  constexpr std::string_view marks[] = {"WITH TIME ZONE", "TIMESTAMPTZ", "TIMETZ",
                                        "DATETIMEOFFSET"};
  const std::string upper = AsciiUpper(typeName);
  return std::ranges::any_of(
      marks, [&upper](std::string_view mark) { return upper.find(mark) != std::string::npos; });
}

std::string ColumnTypeName(SqlDialect dialect, const ColumnType& column) {
  const Kind kind = KindIn(dialect, column);
  switch (dialect) {
    case SqlDialect::PostgreSQL: return PostgresName(kind, column);
    case SqlDialect::MariaDB: return MariaName(kind, column);
    case SqlDialect::SQLite: return SqliteName(kind, column);
    case SqlDialect::SqlServer: return ServerName(kind, column);
    case SqlDialect::Standard: return StandardName(kind, column);
  }
  return StandardName(kind, column);
}

std::string_view TableEnding(SqlDialect dialect) {
  return dialect == SqlDialect::MariaDB ? " DEFAULT CHARSET=utf8mb4" : "";
}

}  // namespace tessel
