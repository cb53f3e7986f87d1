#include <algorithm>
#include <deque>
#include <string>

#include "data/providers/odbc/OdbcRows.h"
#include "data/providers/odbc/OdbcSession.h"
#include "data/providers/odbc/driver/OdbcErrors.h"

namespace tessel::odbc {

namespace {

/// From this length on a text is a long one to drivers.
constexpr std::size_t longText = 4000;

bool IsWide(DataType type) {
  return type == DataType::WChar || type == DataType::VarWChar || type == DataType::LongVarWChar;
}

/// The parameters of a statement, as the driver gets them. Must stay where it is until the
/// statement has run.
class Parameters {
 public:
  explicit Parameters(const DriverProfile& profile) : profile_(profile) {}

  void Bind(Statement& statement, const std::vector<RowStatement::Parameter>& parameters) {
    for (const auto& [value, field] : parameters) {
      isWide_ = IsWide(field->type);
      std::visit([&](const auto& one) { Add(statement, one); }, value);
    }
  }

 private:
  struct Held {
    std::string text;
    std::int64_t number = 0;
    std::uint64_t natural = 0;
    double real = 0;
    SQLLEN indicator = 0;
  };

  void Add(Statement& statement, std::monostate /*null*/) {
    Bind(statement, SQL_C_CHAR, SQL_VARCHAR, nullptr, Next(SQL_NULL_DATA));
  }
  void Add(Statement& statement, bool value) {
    if (!profile_.takesNumbers) return AddText(statement, value ? "1" : "0");
    Add(statement, std::int64_t{value ? 1 : 0});
  }
  void Add(Statement& statement, std::int64_t value) {
    if (!profile_.takesNumbers) return AddText(statement, std::to_string(value));
    Held& held = Next(sizeof value);
    held.number = value;
    Bind(statement, SQL_C_SBIGINT, SQL_BIGINT, &held.number, held);
  }
  void Add(Statement& statement, std::uint64_t value) {
    if (!profile_.takesNumbers) return AddText(statement, std::to_string(value));
    Held& held = Next(sizeof value);
    held.natural = value;
    Bind(statement, SQL_C_UBIGINT, SQL_BIGINT, &held.natural, held);
  }
  void Add(Statement& statement, double value) {
    if (!profile_.takesNumbers) return AddText(statement, ToText(value));
    Held& held = Next(sizeof value);
    held.real = value;
    Bind(statement, SQL_C_DOUBLE, SQL_DOUBLE, &held.real, held);
  }
  void Add(Statement& statement, float value) { AddText(statement, ToText(value)); }
  void Add(Statement& statement, DecimalView value) { AddText(statement, value.digits); }
  void Add(Statement& statement, MomentView value) { AddText(statement, value.text); }
  void Add(Statement& statement, std::string_view value) { AddText(statement, value); }
  void Add(Statement& statement, BinaryView value) {
    Held& held = Next(static_cast<SQLLEN>(value.bytes.size()));
    held.text.assign(reinterpret_cast<const char*>(value.bytes.data()), value.bytes.size());
    Bind(statement, SQL_C_BINARY, SQL_LONGVARBINARY, held.text.data(), held);
  }

  void AddText(Statement& statement, std::string_view text) {
    if (profile_.textEndsAtZero && text.find('\0') != std::string_view::npos)
      throw Error(errorNumber::typeMismatch, std::string(profile_.name),
                  "The ODBC driver cannot write a text with a zero character in it.");
    Held& held = Next(static_cast<SQLLEN>(text.size()));
    held.text = text;
    const bool isLong = text.size() >= longText;
    const int narrow = isLong ? SQL_LONGVARCHAR : SQL_VARCHAR;
    const int wide = isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
    Bind(statement, SQL_C_CHAR, static_cast<SQLSMALLINT>(isWide_ ? wide : narrow), held.text.data(),
         held);
  }

  Held& Next(SQLLEN indicator) {
    Held& held = held_.emplace_back();
    held.indicator = indicator;
    return held;
  }
  void Bind(Statement& statement, SQLSMALLINT cType, SQLSMALLINT sqlType, void* buffer,
            Held& held) {
    statement.BindParameter(static_cast<SQLUSMALLINT>(held_.size()), cType, sqlType, buffer,
                            &held.indicator);
  }

  const DriverProfile& profile_;
  bool isWide_ = false;  ///< What is bound goes to a column that takes every character.
  std::deque<Held> held_;
};

/// Whether a catalog may stand before a table that is changed, and how it would be written.
bool NamesCatalog(const Dbc& dbc) {
  const std::uint32_t usage = dbc.InfoNumber(SQL_CATALOG_USAGE).value_or(0);
  const std::uint32_t place = dbc.InfoNumber(SQL_CATALOG_LOCATION).value_or(0);
  return (usage & SQL_CU_DML_STATEMENTS) != 0 && place == SQL_CL_START &&
         dbc.InfoText(SQL_CATALOG_NAME_SEPARATOR) == ".";
}

}  // namespace

const WriteDialect* OdbcSession::Writing() {
  if (profile_.writing == nullptr) return nullptr;
  if (!dialect_)
    dialect_ = profile_.writing({.name = dbc_->InfoText(SQL_DBMS_NAME).value_or(""),
                                 .version = dbc_->InfoText(SQL_DBMS_VER).value_or(""),
                                 .quote = dbc_->InfoText(SQL_IDENTIFIER_QUOTE_CHAR).value_or(""),
                                 .namesCatalog = NamesCatalog(*dbc_)});
  return &*dialect_;
}

/// After a cancel that reached the driver too late its result is gone; the change is undone.
StatementResult OdbcSession::RunStatement(const RowStatement& text, WorkContext& context) {
  hasWarnings_ = true;
  return Guarded(context, [&] {
    Statement statement(*dbc_);
    Parameters parameters(profile_);
    parameters.Bind(statement, text.parameters);
    Diagnostics notices;
    const Outcome outcome = statement.Execute(text.sql, cancel_, notices);
    if (cancel_.Sent()) RaiseCancelledLate();
    if (outcome == Outcome::NoData) return StatementResult();
    for (ErrorInfo& notice : ToNotices(notices, driver_, profile_))
      context.Report(std::move(notice));
    return ReadResult(statement);
  });
}

void OdbcSession::RaiseCancelledLate() const {
  if (!dialect_ || !dialect_->needsKey) throw CancelledError();
  throw Error(errorNumber::database, driver_,
              "The cancel came late: the change may have been written. Run the query again to see "
              "the record as it is now.");
}

StatementResult OdbcSession::ReadResult(Statement& statement) {
  const std::vector<ResultField> fields = DescribeFields(statement, profile_);
  StatementResult result;
  if (fields.empty()) {
    result.rows = std::max<std::int64_t>(statement.RowCount(), 0);
    return result;
  }
  RowSink rows(fields.size());
  RowReader reader(statement, fields, canReadBoundCells_);
  if (reader.ReadRow(rows)) result.rows = 1;
  while (result.rows > 0 && statement.Fetch()) ++result.rows;
  result.first = TakeFirstRow(rows);
  return result;
}

/// Asked of the server: a driver knows what it was told to do, not what the user's text did.
UserTransaction OdbcSession::Transaction() try {
  if (profile_.transactionQuery.empty()) return UserTransaction::Unknown;
  CancelSwitch unheard;
  Diagnostics unused;
  Statement query(*dbc_);
  query.Execute(std::string(profile_.transactionQuery), unheard, unused);
  std::int64_t answer = 0;
  ForEachRow(query, 1, [&](const TextRow& row) { answer = ToNumber(row[0], 0); });
  if (answer == 2) return UserTransaction::Waiting;
  return answer == 1 ? UserTransaction::Open : UserTransaction::None;
} catch (const Failure& failure) {
  NoteHealth(failure);
  const ErrorInfo error = ToErrors(failure.Records(), driver_).front();
  if (error.sqlState == profile_.failedTransactionState) return UserTransaction::Failed;
  throw Error(error);
}

/// Cannot be cancelled: nobody knows the switch.
void OdbcSession::RunControl(std::string_view sql, const WorkContext* /*context*/) try {
  CancelSwitch unheard;
  Diagnostics unused;
  Statement(*dbc_).Execute(std::string(sql), unheard, unused);
} catch (const Failure& failure) {
  NoteHealth(failure);
  throw Error(ToErrors(failure.Records(), driver_).front());
}

}  // namespace tessel::odbc
