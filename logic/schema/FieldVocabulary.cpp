#include "logic/schema/FieldVocabulary.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "logic/schema/sql/SqlGeneration.h"
#include "logic/text/frmText.h"

namespace tessel {

void FieldVocabulary::Build(const std::string& listName, const std::string& table,
                            const std::string& field, const NameQuoting& quoting,
                            const std::shared_ptr<Connection>& connection) {
  const std::optional<Values> values = Read(DistinctValuesText(table, field, quoting), *connection);
  if (!values) return;
  if (!values->any) return Notice("The table '" + table + "' is empty.");
  if (values->text.empty()) return Notice("All values of '" + field + "' are blank.");
  Review(listName, values->text);
}

std::optional<FieldVocabulary::Values> FieldVocabulary::Read(const std::string& sql,
                                                             Connection& connection) {
  try {
    const std::shared_ptr<Recordset> rows = async_.ReadRows(connection, sql);
    if (rows == nullptr) return std::nullopt;
    Values values{rows->RecordCount() != 0, TextOf(*rows)};
    rows->Close();
    return values;
  } catch (const Error& error) {
    connection.ClearErrors();
    help_.HelpMsgBoxNotice(error.Description(), MessageButtons::Ok, MessageIcon::Critical);
    return std::nullopt;
  }
}

std::string FieldVocabulary::TextOf(const Recordset& rows) {
  std::string text;
  const std::shared_ptr<Connection> connection = rows.ActiveConnection();
  async_.ForEach("Reading vocabulary...", connection.get(), rows.RecordCount(),
                 [&](std::int64_t row) {
                   const std::string value = ToText(rows.ValueAt(row, 0));
                   const std::size_t start = std::min(value.find_first_not_of(' '), value.size());
                   if (start != value.size()) text.append(value, start).append("\r\n");
                 });
  return text;
}

void FieldVocabulary::Review(const std::string& listName, std::string text) {
  const std::string title = "Vocabulary of " + listName;
  if (!ShowText(global_, sqlWindow_, text, {0, "", 4800, 6300, true, false, title})) return;
  WordList& words = Vocabulary::ListNamed(vocabulary_.Custom(), listName);
  words.clear();
  ParseWordList(words, text);
}

void FieldVocabulary::Notice(const std::string& text) const {
  help_.HelpMsgBoxNotice(text, MessageButtons::Ok, MessageIcon::Exclamation);
}

}  // namespace tessel
