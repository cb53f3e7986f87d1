#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Recordset.h"
#include "data/rows/RowSink.h"

namespace tessel {

/// How statements that change rows are written for one database: it holds every point in which
/// databases differ.
struct WriteDialect {
  /// How a column is compared with a parameter. {column} and {value} stand for the two; an empty
  /// pattern says that it cannot be.
  struct Comparison {
    std::string_view typeName = {};   ///< The field's, or that of an array's elements.
    DataType type = DataType::Empty;  ///< Chosen by it where there is no name.
    std::string_view pattern = {};
  };

  char quote = '"';                  ///< On both sides of names, doubled within them; 0: none.
  bool namesCatalog = false;         ///< The catalog stands before the table.
  bool numbersParameters = false;    ///< "$1", "$2" instead of "?".
  std::string_view sameOrNull = {};  ///< The pattern for all columns but the following.
  std::vector<Comparison> comparisons = {};
  std::string_view insertDefaults = "default values";  ///< For a row of which no value is given.
  bool returnsInserted = false;                        ///< INSERT knows RETURNING.
  bool returnsUpdated = false;                         ///< UPDATE knows RETURNING.
  std::string_view lastKey = {};  ///< Asks for the number that was generated last; may be empty.
  std::string_view begin = {};    ///< Empty: a savepoint begins a transaction where there is none.
  bool countsFirst = false;       ///< There are tables whose changes cannot be undone.
  /// A statement that makes a table ends the transaction that is open, and cannot be undone.
  bool definesAtOnce = false;
  /// Nothing is known of transactions: none is begun, and rows are written only where a key makes
  /// sure that there is but one.
  bool needsKey = false;
};

/// A statement that changes rows or reads some back.
struct RowStatement {
  /// A value and the field whose column it is written to or compared with.
  struct Parameter {
    ValueView value;
    const FieldInfo* field = nullptr;
  };
  std::string sql;
  std::vector<Parameter> parameters;      ///< What they look at outlives the statement.
  std::vector<const FieldInfo*> columns;  ///< Of its result, where it gives one.
};

/// What a statement did.
struct StatementResult {
  std::int64_t rows = 0;     ///< How many it changed, or how many its result has.
  std::vector<Value> first;  ///< The first row of the result; empty when there is none.
};

/// The first of the rows in `rows`, which is empty afterwards; nothing when there is none.
[[nodiscard]] std::vector<Value> TakeFirstRow(RowSink& rows);

}  // namespace tessel
