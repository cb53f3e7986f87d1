#pragma once

#include <string>
#include <string_view>

#include "contract/base/Value.h"
#include "contract/sql/SqlDialect.h"
#include "logic/results/export/formats/Cells.h"

namespace tessel {

/// How one database writes names and values in its SQL. Any thread.
class SqlLiterals {
 public:
  explicit SqlLiterals(SqlDialect dialect) : dialect_(dialect) {}

  /// A name as the database spells it, always in its quotes.
  [[nodiscard]] std::string Name(std::string_view name) const;
  /// A table's name as a person wrote it, alone or behind that of its schema.
  [[nodiscard]] std::string Table(std::string_view written) const;

  /// Appends the literal of a value for a column of `type`. Raises Error(application) for what the
  /// database has no literal for, and no column could hold.
  void Append(TextSink& sink, const ValueView& value, DataType type, const CellPlace& place) const;

  /// Statements that make a program of the database read what follows as it is meant; may be empty.
  [[nodiscard]] std::string_view Preamble() const;

 private:
  void AppendFlag(TextSink& sink, bool flag) const;
  void AppendText(TextSink& sink, std::string_view text, const CellPlace& place) const;
  void AppendBytes(TextSink& sink, BinaryView binary) const;
  void AppendSpecial(TextSink& sink, Special special, const CellPlace& place) const;
  void AppendDecimal(TextSink& sink, std::string_view digits) const;
  void AppendQuoted(TextSink& sink, std::string_view text) const;
  template <class Number>
  void AppendFloating(TextSink& sink, Number number) const;
  void RefuseNoText(std::string_view text, const CellPlace& place) const;

  SqlDialect dialect_;
};

}  // namespace tessel
