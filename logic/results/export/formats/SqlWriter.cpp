// INSERT statements of several records each, for one database, and the CREATE TABLE that they fit.

#include <algorithm>
#include <utility>

#include "contract/sql/ColumnTypes.h"
#include "logic/results/export/formats/RecordWriter.h"
#include "logic/results/export/formats/SqlLiterals.h"

namespace tessel {

namespace {

constexpr int mostRowsOfSqlServer = 1000;
constexpr std::size_t muchText = std::size_t{1} << 19U;  ///< A statement of more ends.

class SqlWriter final : public RecordWriter {
 public:
  SqlWriter(const ExportChoices& choices, std::vector<FieldInfo> fields)
      : dialect_(choices.database),
        createTable_(choices.createTable),
        rowsPerInsert_(choices.rowsPerInsert),
        literals_(choices.database),
        fields_(std::move(fields)),
        names_(DifferingNames(fields_)),
        table_(literals_.Table(choices.table)) {
    if (dialect_ == SqlDialect::SqlServer)
      rowsPerInsert_ = std::min(rowsPerInsert_, mostRowsOfSqlServer);
    head_ = "INSERT INTO " + table_ + " (";
    for (std::size_t i = 0; i < names_.size(); ++i)
      head_.append(i == 0 ? "" : ", ").append(literals_.Name(names_[i]));
    head_ += ") VALUES\n";
  }

  void Open(TextSink& sink) const override {
    sink.Text() += literals_.Preamble();
    if (createTable_) AppendTable(sink.Text());
  }

  /// Each batch begins with a statement of its own. A long record ends its statement.
  void Write(TextSink& sink, const RecordBatch& batch) const override {
    int rows = 0;
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < batch.Records(); ++i) {
      sink.Text() += rows == 0 ? std::string_view(head_) : ",\n";
      const std::size_t before = sink.Text().size();
      AppendRecord(sink, batch.Record(i), batch.first + static_cast<std::int64_t>(i) + 1);
      const std::size_t after = sink.Text().size();
      bytes += after > before ? after - before : muchText;
      const bool ends = ++rows == rowsPerInsert_ || bytes >= muchText || i + 1 == batch.Records();
      if (!ends) continue;
      sink.Text() += ";\n";
      rows = 0;
      bytes = 0;
      sink.Pass();
    }
  }

  void Close(TextSink& /*sink*/, std::int64_t /*records*/) const override {}

 private:
  void AppendRecord(TextSink& sink, std::span<const ValueView> values, std::int64_t record) const {
    sink.Text() += '(';
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (i != 0) sink.Text() += ", ";
      literals_.Append(sink, values[i], fields_[i].type, {record, names_[i]});
    }
    sink.Text() += ')';
  }

  /// A column of SQLite without a type keeps each value as what it is; as text numbers would become
  /// texts.
  [[nodiscard]] bool HoldsAnything(const FieldInfo& field) const {
    return dialect_ == SqlDialect::SQLite && field.typeName.empty() &&
           field.type == DataType::VarWChar;
  }

  void AppendTable(std::string& out) const {
    out += "CREATE TABLE " + table_ + " (";
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      const FieldInfo& field = fields_[i];
      out.append(i == 0 ? "\n  " : ",\n  ").append(literals_.Name(names_[i]));
      if (!HoldsAnything(field))
        out += " " + ColumnTypeName(dialect_, {field.type, field.precision, field.scale, 0,
                                               IsZonedType(field.typeName)});
      if (!field.nullable) out += " NOT NULL";
    }
    out.append("\n)").append(TableEnding(dialect_)).append(";\n");
  }

  SqlDialect dialect_;
  bool createTable_;
  int rowsPerInsert_;
  SqlLiterals literals_;
  std::vector<FieldInfo> fields_;
  std::vector<std::string> names_;
  std::string table_;
  std::string head_;  ///< Of each statement, up to its values.
};

}  // namespace

std::unique_ptr<RecordWriter> MakeSqlWriter(const ExportChoices& choices,
                                            std::vector<FieldInfo> fields) {
  return std::make_unique<SqlWriter>(choices, std::move(fields));
}

}  // namespace tessel
