#include "data/providers/odbc/driver/OdbcApi.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tessel::odbc {

namespace {

/// Drivers cut messages that do not fit without saying how long they are.
constexpr SQLSMALLINT messageSize = 32000;
constexpr std::size_t mostRecords = 200;

SQLCHAR* Text(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
}

/// Some drivers do not end short texts, others do not say how long they are: the buffer is zeroed
/// first and the text ends at the first zero.
template <std::size_t size>
class TextBuffer {
 public:
  [[nodiscard]] SQLCHAR* Data() { return reinterpret_cast<SQLCHAR*>(bytes_.data()); }
  [[nodiscard]] static constexpr SQLSMALLINT Size() { return static_cast<SQLSMALLINT>(size); }
  [[nodiscard]] std::string Get() const { return {bytes_.data(), strnlen(bytes_.data(), size)}; }

 private:
  std::array<char, size + 1> bytes_{};
};

const char* NameOf(SQLRETURN code) {
  switch (code) {
    case SQL_SUCCESS: return "SUCCESS";
    case SQL_SUCCESS_WITH_INFO: return "SUCCESS_WITH_INFO";
    case SQL_NO_DATA: return "NO_DATA";
    case SQL_INVALID_HANDLE: return "INVALID_HANDLE";
    default: return "ERROR";
  }
}

/// Lists what SQLDrivers or SQLDataSources walk over, up to the first failure.
template <class Function>
std::vector<NamedItem> Walk(const Handle& environment, Function function) {
  std::vector<NamedItem> items;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST;; direction = SQL_FETCH_NEXT) {
    TextBuffer<1024> first;
    TextBuffer<4096> second;
    SQLSMALLINT firstSize = 0;
    SQLSMALLINT secondSize = 0;
    const SQLRETURN code = function(environment.Raw(), direction, first.Data(), first.Size(),
                                    &firstSize, second.Data(), second.Size(), &secondSize);
    if (!SQL_SUCCEEDED(code)) return items;
    items.emplace_back(first.Get(), second.Get());
  }
}

/// A name part for a catalog call: pointer and size, both null when there is none.
struct Part {
  explicit Part(const std::optional<std::string>& text)
      : data(text ? Text(*text) : nullptr),
        size(text ? static_cast<SQLSMALLINT>(text->size()) : SQLSMALLINT{0}) {}
  SQLCHAR* data;
  SQLSMALLINT size;
};

}  // namespace

// --- Handle --------------------------------------------------------------------------------------

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent, std::shared_ptr<const Trace> trace)
    : type_(type), trace_(std::move(trace)) {
  const SQLRETURN code = SQLAllocHandle(type, parent, &handle_);
  if (SQL_SUCCEEDED(code)) {
    Note("SQLAllocHandle", code, {});
    return;
  }
  // The reason stands with the parent.
  handle_ = parent;
  type_ = type == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV;
  Check("SQLAllocHandle", code);
}

Handle::~Handle() { Note("SQLFreeHandle", SQLFreeHandle(type_, handle_), {}); }

Outcome Handle::Check(const char* function, SQLRETURN code) const {
  if (code == SQL_SUCCESS || code == SQL_SUCCESS_WITH_INFO || code == SQL_NO_DATA) {
    Note(function, code, {});
    if (code == SQL_NO_DATA) return Outcome::NoData;
    return code == SQL_SUCCESS ? Outcome::Success : Outcome::SuccessWithInfo;
  }
  Diagnostics records = ReadDiagnostics();
  Note(function, code, records);
  if (records.empty())
    records.push_back({"", 0, std::string("The driver failed without a reason in ") + function});
  throw Failure(std::move(records));
}

Diagnostics Handle::ReadDiagnostics() const {
  Diagnostics records;
  std::string text(messageSize, '\0');
  while (records.size() < mostRecords) {
    TextBuffer<6> state;
    SQLINTEGER native = 0;
    SQLSMALLINT size = 0;
    text.assign(messageSize, '\0');
    const SQLRETURN code =
        SQLGetDiagRec(type_, handle_, static_cast<SQLSMALLINT>(records.size() + 1), state.Data(),
                      &native, Text(text), messageSize, &size);
    if (!SQL_SUCCEEDED(code)) break;
    records.push_back({state.Get(), native, text.c_str()});
  }
  return records;
}

void Handle::Note(const char* function, SQLRETURN code, const Diagnostics& records) const {
  if (!trace_ || !*trace_) return;
  std::string line = std::string(function) + " " + NameOf(code);
  for (const Diagnostic& record : records)
    line += " [" + record.state + " " + std::to_string(record.native) + "]";
  (*trace_)(line);
}

// --- Environment ---------------------------------------------------------------------------------

Environment::Environment(std::shared_ptr<const Trace> trace)
    : handle_(SQL_HANDLE_ENV, SQL_NULL_HANDLE, std::move(trace)) {
  handle_.Check("SQLSetEnvAttr",
                SQLSetEnvAttr(handle_.Raw(), SQL_ATTR_ODBC_VERSION,
                              reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_OV_ODBC3}), 0));
}

std::vector<NamedItem> Environment::Drivers() const { return Walk(handle_, SQLDrivers); }

std::vector<NamedItem> Environment::DataSources() const { return Walk(handle_, SQLDataSources); }

// --- Dbc -----------------------------------------------------------------------------------------

Dbc::Dbc(std::shared_ptr<const Trace> trace)
    : environment_(trace), handle_(SQL_HANDLE_DBC, environment_.Get().Raw(), std::move(trace)) {}

Dbc::~Dbc() {
  if (connected_) SQLDisconnect(handle_.Raw());
}

Diagnostics Dbc::Connect(const std::string& connectionString, std::chrono::seconds timeout) {
  const auto seconds = static_cast<std::uintptr_t>(timeout.count());
  SQLSetConnectAttr(handle_.Raw(), SQL_ATTR_LOGIN_TIMEOUT, reinterpret_cast<SQLPOINTER>(seconds),
                    SQL_IS_UINTEGER);
  const Outcome outcome = handle_.Check(
      "SQLDriverConnect", SQLDriverConnect(handle_.Raw(), nullptr, Text(connectionString),
                                           static_cast<SQLSMALLINT>(connectionString.size()),
                                           nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
  connected_ = true;
  return outcome == Outcome::SuccessWithInfo ? handle_.ReadDiagnostics() : Diagnostics{};
}

std::optional<std::string> Dbc::InfoText(SQLUSMALLINT question) const {
  TextBuffer<4096> answer;
  SQLSMALLINT size = 0;
  const SQLRETURN code = SQLGetInfo(handle_.Raw(), question, answer.Data(), answer.Size(), &size);
  if (!SQL_SUCCEEDED(code)) return std::nullopt;
  return answer.Get();
}

// Some answers have 16 bits, others 32: drivers write the low bytes first here.
std::optional<std::uint32_t> Dbc::InfoNumber(SQLUSMALLINT question) const {
  std::uint32_t answer = 0;
  SQLSMALLINT size = 0;
  const SQLRETURN code = SQLGetInfo(handle_.Raw(), question, &answer, sizeof answer, &size);
  if (!SQL_SUCCEEDED(code)) return std::nullopt;
  return answer;
}

std::string Dbc::CurrentCatalog() const {
  TextBuffer<1024> name;
  SQLINTEGER size = 0;
  handle_.Check("SQLGetConnectAttr", SQLGetConnectAttr(handle_.Raw(), SQL_ATTR_CURRENT_CATALOG,
                                                       name.Data(), name.Size(), &size));
  return name.Get();
}

void Dbc::SetCurrentCatalog(const std::string& name) {
  handle_.Check("SQLSetConnectAttr",
                SQLSetConnectAttr(handle_.Raw(), SQL_ATTR_CURRENT_CATALOG, Text(name),
                                  static_cast<SQLINTEGER>(name.size())));
}

std::optional<bool> Dbc::IsDead() const noexcept {
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN code =
      SQLGetConnectAttr(handle_.Raw(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
  if (!SQL_SUCCEEDED(code)) return std::nullopt;
  return dead == SQL_CD_TRUE;
}

// --- Statement -----------------------------------------------------------------------------------

Statement::Statement(const Dbc& dbc)
    : handle_(SQL_HANDLE_STMT, dbc.Get().Raw(), dbc.Get().TraceSink()) {}

/// Of a null, or an empty value, the size may not be 0.
void Statement::BindParameter(SQLUSMALLINT number, SQLSMALLINT cType, SQLSMALLINT sqlType,
                              void* buffer, SQLLEN* indicator) {
  const SQLLEN size = std::max<SQLLEN>(*indicator, 1);
  handle_.Check("SQLBindParameter",
                SQLBindParameter(handle_.Raw(), number, SQL_PARAM_INPUT, cType, sqlType,
                                 static_cast<SQLULEN>(size), 0, buffer, size, indicator));
}

template <class Function>
SQLRETURN Statement::RunCancellable(CancelSwitch& cancel, Function function) {
  const CancelSwitch::On on(cancel, [statement = handle_.Raw()] { SQLCancel(statement); });
  return function();
}

Outcome Statement::Execute(const std::string& sql, CancelSwitch& cancel, Diagnostics& notices) {
  const SQLRETURN code = RunCancellable(cancel, [&] {
    return SQLExecDirect(handle_.Raw(), Text(sql), static_cast<SQLINTEGER>(sql.size()));
  });
  const Outcome outcome = handle_.Check("SQLExecDirect", code);
  if (outcome == Outcome::SuccessWithInfo) notices = handle_.ReadDiagnostics();
  return outcome;
}

void Statement::Prepare(const std::string& sql) {
  handle_.Check("SQLPrepare",
                SQLPrepare(handle_.Raw(), Text(sql), static_cast<SQLINTEGER>(sql.size())));
}

bool Statement::SetArray(SQLULEN rows, SQLUSMALLINT* states) {
  const auto set = [this](SQLINTEGER attribute, void* value) {
    return SQL_SUCCEEDED(SQLSetStmtAttr(handle_.Raw(), attribute, value, 0));
  };
  return set(SQL_ATTR_PARAM_BIND_TYPE, SQL_PARAM_BIND_BY_COLUMN) &&
         set(SQL_ATTR_PARAM_STATUS_PTR, states) &&
         set(SQL_ATTR_PARAMSET_SIZE, reinterpret_cast<void*>(rows));
}

void Statement::BindArray(SQLUSMALLINT number, SQLSMALLINT cType, SQLSMALLINT sqlType, char* values,
                          SQLLEN width, SQLLEN* indicators) {
  handle_.Check("SQLBindParameter",
                SQLBindParameter(handle_.Raw(), number, SQL_PARAM_INPUT, cType, sqlType,
                                 static_cast<SQLULEN>(width), 0, values, width, indicators));
}

Outcome Statement::ExecutePrepared(CancelSwitch& cancel, Diagnostics& notices) {
  const SQLRETURN code = RunCancellable(cancel, [&] { return SQLExecute(handle_.Raw()); });
  const Outcome outcome = handle_.Check("SQLExecute", code);
  if (outcome == Outcome::SuccessWithInfo) notices = handle_.ReadDiagnostics();
  return outcome;
}

bool Statement::MoreResults(CancelSwitch& cancel, Diagnostics& notices) {
  const SQLRETURN code = RunCancellable(cancel, [&] { return SQLMoreResults(handle_.Raw()); });
  try {
    const Outcome outcome = handle_.Check("SQLMoreResults", code);
    if (outcome == Outcome::SuccessWithInfo) notices = handle_.ReadDiagnostics();
    return outcome != Outcome::NoData;
  } catch (const Failure& failure) {
    if (failure.State() == "IM001") return false;
    throw;
  }
}

SQLSMALLINT Statement::ColumnCount() const {
  SQLSMALLINT count = 0;
  handle_.Check("SQLNumResultCols", SQLNumResultCols(handle_.Raw(), &count));
  return count;
}

ColumnDescription Statement::Describe(SQLUSMALLINT column) const {
  TextBuffer<1024> name;
  SQLSMALLINT size = 0;
  SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
  ColumnDescription description;
  handle_.Check("SQLDescribeCol", SQLDescribeCol(handle_.Raw(), column, name.Data(), name.Size(),
                                                 &size, &description.type, &description.size,
                                                 &description.digits, &nullable));
  description.name = name.Get();
  description.nullable = nullable != SQL_NO_NULLS;
  return description;
}

std::optional<std::string> Statement::ColumnText(SQLUSMALLINT column,
                                                 SQLUSMALLINT attribute) const {
  TextBuffer<1024> text;
  SQLSMALLINT size = 0;
  const SQLRETURN code =
      SQLColAttribute(handle_.Raw(), column, attribute, text.Data(), text.Size(), &size, nullptr);
  if (!SQL_SUCCEEDED(code)) return std::nullopt;
  return text.Get();
}

std::optional<std::int64_t> Statement::ColumnNumber(SQLUSMALLINT column,
                                                    SQLUSMALLINT attribute) const {
  SQLLEN number = 0;
  const SQLRETURN code =
      SQLColAttribute(handle_.Raw(), column, attribute, nullptr, 0, nullptr, &number);
  if (!SQL_SUCCEEDED(code)) return std::nullopt;
  return number;
}

std::int64_t Statement::RowCount() const {
  SQLLEN count = -1;
  handle_.Check("SQLRowCount", SQLRowCount(handle_.Raw(), &count));
  return count;
}

void Statement::Bind(SQLUSMALLINT column, SQLSMALLINT type, void* buffer, SQLLEN size,
                     SQLLEN* indicator) {
  handle_.Check("SQLBindCol", SQLBindCol(handle_.Raw(), column, type, buffer, size, indicator));
}

void Statement::Unbind() { handle_.Check("SQLFreeStmt", SQLFreeStmt(handle_.Raw(), SQL_UNBIND)); }

bool Statement::Fetch() {
  return handle_.Check("SQLFetch", SQLFetch(handle_.Raw())) != Outcome::NoData;
}

Outcome Statement::GetData(SQLUSMALLINT column, SQLSMALLINT type, void* buffer, SQLLEN size,
                           SQLLEN* indicator) {
  return handle_.Check("SQLGetData",
                       SQLGetData(handle_.Raw(), column, type, buffer, size, indicator));
}

void Statement::Tables(const CatalogName& pattern, const std::string& types) {
  const Part catalog(pattern.catalog);
  const Part schema(pattern.schema);
  const Part table(pattern.table);
  SQLCHAR* typeList = types.empty() ? nullptr : Text(types);
  handle_.Check("SQLTables", SQLTables(handle_.Raw(), catalog.data, catalog.size, schema.data,
                                       schema.size, table.data, table.size, typeList,
                                       static_cast<SQLSMALLINT>(types.size())));
}

void Statement::Columns(const CatalogName& pattern) {
  const Part catalog(pattern.catalog);
  const Part schema(pattern.schema);
  const Part table(pattern.table);
  handle_.Check("SQLColumns", SQLColumns(handle_.Raw(), catalog.data, catalog.size, schema.data,
                                         schema.size, table.data, table.size, nullptr, 0));
}

void Statement::PrimaryKeys(const CatalogName& name) {
  const Part catalog(name.catalog);
  const Part schema(name.schema);
  const Part table(name.table);
  handle_.Check("SQLPrimaryKeys", SQLPrimaryKeys(handle_.Raw(), catalog.data, catalog.size,
                                                 schema.data, schema.size, table.data, table.size));
}

void Statement::UniqueIndexes(const CatalogName& name) {
  const Part catalog(name.catalog);
  const Part schema(name.schema);
  const Part table(name.table);
  handle_.Check("SQLStatistics",
                SQLStatistics(handle_.Raw(), catalog.data, catalog.size, schema.data, schema.size,
                              table.data, table.size, SQL_INDEX_UNIQUE, SQL_QUICK));
}

}  // namespace tessel::odbc
