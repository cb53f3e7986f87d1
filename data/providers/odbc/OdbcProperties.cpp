#include "data/providers/odbc/OdbcProperties.h"

namespace tessel::odbc {

namespace {

enum class Answer { Text, YesNo, Number };

struct Question {
  const char* name;
  SQLUSMALLINT id;
  Answer answer;
};

constexpr Question questions[] = {
    {"DBMS Name", SQL_DBMS_NAME, Answer::Text},
    {"DBMS Version", SQL_DBMS_VER, Answer::Text},
    {"Driver Name", SQL_DRIVER_NAME, Answer::Text},
    {"Driver Version", SQL_DRIVER_VER, Answer::Text},
    {"Driver ODBC Version", SQL_DRIVER_ODBC_VER, Answer::Text},
    {"Current Catalog", SQL_DATABASE_NAME, Answer::Text},
    {"Server Name", SQL_SERVER_NAME, Answer::Text},
    {"User Name", SQL_USER_NAME, Answer::Text},
    {"Read-Only Data Source", SQL_DATA_SOURCE_READ_ONLY, Answer::YesNo},
    {"Identifier Quote Character", SQL_IDENTIFIER_QUOTE_CHAR, Answer::Text},
    {"Catalog Term", SQL_CATALOG_TERM, Answer::Text},
    {"Schema Term", SQL_SCHEMA_TERM, Answer::Text},
    {"Table Term", SQL_TABLE_TERM, Answer::Text},
    {"Procedure Term", SQL_PROCEDURE_TERM, Answer::Text},
    {"Catalog Name Separator", SQL_CATALOG_NAME_SEPARATOR, Answer::Text},
    {"Catalog Location", SQL_CATALOG_LOCATION, Answer::Number},
    {"Catalog Usage", SQL_CATALOG_USAGE, Answer::Number},
    {"Schema Usage", SQL_SCHEMA_USAGE, Answer::Number},
    {"Identifier Case Sensitivity", SQL_IDENTIFIER_CASE, Answer::Number},
    {"Quoted Identifier Sensitivity", SQL_QUOTED_IDENTIFIER_CASE, Answer::Number},
    {"Maximum Identifier Length", SQL_MAX_IDENTIFIER_LEN, Answer::Number},
    {"Maximum Statement Length", SQL_MAX_STATEMENT_LEN, Answer::Number},
    {"Transaction Support", SQL_TXN_CAPABLE, Answer::Number},
    {"Default Isolation Level", SQL_DEFAULT_TXN_ISOLATION, Answer::Number},
    {"Isolation Levels", SQL_TXN_ISOLATION_OPTION, Answer::Number},
    {"Cursor Commit Behavior", SQL_CURSOR_COMMIT_BEHAVIOR, Answer::Number},
    {"Multiple Results", SQL_MULT_RESULT_SETS, Answer::YesNo},
    {"Multiple Active Transactions", SQL_MULTIPLE_ACTIVE_TXN, Answer::YesNo},
    {"NULL Collation Order", SQL_NULL_COLLATION, Answer::Number},
    {"Collation Sequence", SQL_COLLATION_SEQ, Answer::Text},
    {"Search Pattern Escape", SQL_SEARCH_PATTERN_ESCAPE, Answer::Text},
    {"GetData Extensions", SQL_GETDATA_EXTENSIONS, Answer::Number},
    {"Asynchronous Mode", SQL_ASYNC_MODE, Answer::Number},
};

void Ask(const Dbc& dbc, const Question& question, Properties& properties) {
  if (question.answer == Answer::Number) {
    if (const auto number = dbc.InfoNumber(question.id))
      properties.Set(question.name, static_cast<std::int64_t>(*number));
    return;
  }
  const auto text = dbc.InfoText(question.id);
  if (!text) return;
  if (question.answer == Answer::YesNo) properties.Set(question.name, *text == "Y");
  else properties.Set(question.name, *text);
}

}  // namespace

Properties ReadDriverProperties(const Dbc& dbc) {
  Properties properties;
  properties.Set("Provider Name", std::string("ODBC"));
  properties.Set("Data Source Object Threading Model", std::int64_t{1});
  for (const Question& question : questions) Ask(dbc, question, properties);
  for (const char* needed : {"DBMS Name", "DBMS Version", "Identifier Quote Character"})
    if (properties.Find(needed) == nullptr) properties.Set(needed, std::string());
  return properties;
}

}  // namespace tessel::odbc
