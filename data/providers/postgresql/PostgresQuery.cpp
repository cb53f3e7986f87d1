#include "data/providers/postgresql/PostgresQuery.h"

#include <charconv>
#include <optional>

#include "data/providers/postgresql/client/PostgresMessages.h"

namespace tessel {

void ForEachRow(PqConnection& connection, const std::string& sql,
                const std::vector<std::string>& parameters,
                const std::function<void(const PqResult&)>& take) {
  std::optional<ErrorInfo> failure;
  connection.Send(sql, parameters);
  while (const PqResult result = connection.Next()) {
    if (result.Kind() == PqKind::Row) take(result);
    else if (result.Kind() == PqKind::Error && !failure)
      failure = ToErrorInfo(result.Message(), errorNumber::database, sql);
  }
  if (failure) throw Error(*failure);
}

OptionalText OptionalTextAt(const PqResult& row, int column) {
  if (row.IsNullAt(column)) return std::nullopt;
  return std::string(row.TextAt(column));
}

std::string TextAt(const PqResult& row, int column) { return std::string(row.TextAt(column)); }

int NumberAt(const PqResult& row, int column) {
  const std::string_view text = row.TextAt(column);
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

bool BooleanAt(const PqResult& row, int column) { return row.TextAt(column) == "t"; }

}  // namespace tessel
