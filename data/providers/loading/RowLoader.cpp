#include "data/providers/RowLoader.h"

#include <utility>

#include "data/changes/RowSql.h"

namespace tessel {

std::string InsertBeginning(const LoadRequest& request, const WriteDialect& dialect) {
  std::string names;
  for (const LoadColumn& column : request.columns)
    names.append(names.empty() ? "" : ", ").append(QuotedName(column.name, dialect));
  return "insert into " + request.table + " (" + names + ") values ";
}

std::string QuestionMarks(std::size_t count) {
  std::string marks = "(?";
  for (std::size_t i = 1; i < count; ++i) marks += ", ?";
  return marks + ")";
}

StatementLoader::StatementLoader(const LoadRequest& request, const WriteDialect& dialect,
                                 Runner run)
    : run_(std::move(run)) {
  for (const LoadColumn& column : request.columns) {
    FieldInfo& field = fields_.emplace_back();
    field.name = column.name;
    field.type = column.type;
  }
  for (const FieldInfo& field : fields_) statement_.parameters.push_back({{}, &field});
  statement_.sql = InsertBeginning(request, dialect) + QuestionMarks(request.columns.size());
}

void StatementLoader::Add(const LoadBatch& rows, WorkContext& context) {
  auto cell = rows.cells.begin();
  for (std::size_t row = 0; row < rows.Rows(); ++row, ++rows_) {
    context.ThrowIfStopped();
    for (RowStatement::Parameter& parameter : statement_.parameters) parameter.value = *cell++;
    try {
      run_(statement_, context);
    } catch (const Error&) {
      context.RefuseRow(rows_);
      throw;
    }
  }
}

}  // namespace tessel
