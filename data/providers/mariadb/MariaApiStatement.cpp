#include <array>
#include <cstring>

#include "contract/base/Error.h"
#include "data/providers/mariadb/MariaApi.h"

namespace tessel {

namespace {

[[noreturn]] void Raise(int code, const char* state, const char* text) {
  ErrorInfo error;
  error.number = errorNumber::database;
  error.nativeError = code;
  error.sqlState = state;
  error.source = "MariaDB";
  error.description = text;
  throw Error(std::move(error));
}

/// The parameters of a statement and what they point to. Not to be moved once it is filled.
class Binds {
 public:
  explicit Binds(const std::vector<ValueView>& values) : binds_(values.size()) {
    numbers_.reserve(values.size());
    texts_.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
      std::visit([&](const auto& value) { Bind(binds_[i], value); }, values[i]);
  }
  [[nodiscard]] std::vector<MYSQL_BIND>& Get() { return binds_; }

 private:
  struct Number {
    std::array<std::byte, sizeof(std::uint64_t)> bytes;
  };

  static void Bind(MYSQL_BIND& bind, std::monostate /*null*/) {
    bind.buffer_type = MYSQL_TYPE_NULL;
  }
  void Bind(MYSQL_BIND& bind, bool value) { Bind(bind, std::int64_t{value ? 1 : 0}); }
  void Bind(MYSQL_BIND& bind, std::int64_t value) { BindNumber(bind, MYSQL_TYPE_LONGLONG, value); }
  void Bind(MYSQL_BIND& bind, std::uint64_t value) {
    BindNumber(bind, MYSQL_TYPE_LONGLONG, value);
    bind.is_unsigned = 1;
  }
  void Bind(MYSQL_BIND& bind, double value) { BindNumber(bind, MYSQL_TYPE_DOUBLE, value); }
  /// As the text that is the number: its double is another one.
  void Bind(MYSQL_BIND& bind, float value) {
    texts_.push_back(ToText(value));
    BindBytes(bind, MYSQL_TYPE_STRING, texts_.back());
  }
  static void Bind(MYSQL_BIND& bind, DecimalView value) {
    BindBytes(bind, MYSQL_TYPE_STRING, value.digits);
  }
  static void Bind(MYSQL_BIND& bind, MomentView value) {
    BindBytes(bind, MYSQL_TYPE_STRING, value.text);
  }
  static void Bind(MYSQL_BIND& bind, std::string_view value) {
    BindBytes(bind, MYSQL_TYPE_STRING, value);
  }
  static void Bind(MYSQL_BIND& bind, BinaryView value) {
    const auto* start = reinterpret_cast<const char*>(value.bytes.data());
    BindBytes(bind, MYSQL_TYPE_BLOB, {start, value.bytes.size()});
  }

  static void BindBytes(MYSQL_BIND& bind, enum_field_types type, std::string_view bytes) {
    bind.buffer_type = type;
    bind.buffer = const_cast<char*>(bytes.empty() ? "" : bytes.data());
    bind.buffer_length = static_cast<unsigned long>(bytes.size());
  }
  template <class T>
  void BindNumber(MYSQL_BIND& bind, enum_field_types type, T value) {
    Number& number = numbers_.emplace_back();
    std::memcpy(number.bytes.data(), &value, sizeof value);
    bind.buffer_type = type;
    bind.buffer = number.bytes.data();
  }

  std::vector<MYSQL_BIND> binds_;
  std::vector<Number> numbers_;
  std::vector<std::string> texts_;
};

}  // namespace

MariaStatement::MariaStatement(MYSQL* connection, const std::string& sql)
    : statement_(mysql_stmt_init(connection)) {
  if (!statement_)
    Raise(static_cast<int>(mysql_errno(connection)), mysql_sqlstate(connection),
          mysql_error(connection));
  Check(mysql_stmt_prepare(statement_.get(), sql.data(), sql.size()) != 0);
}

void MariaStatement::Check(bool failed) const {
  MYSQL_STMT* statement = statement_.get();
  if (failed)
    Raise(static_cast<int>(mysql_stmt_errno(statement)), mysql_stmt_sqlstate(statement),
          mysql_stmt_error(statement));
}

void MariaStatement::Run(const std::vector<ValueView>& parameters) {
  Binds binds(parameters);
  if (!parameters.empty()) Check(mysql_stmt_bind_param(statement_.get(), binds.Get().data()) != 0);
  Check(mysql_stmt_execute(statement_.get()) != 0);
  if (ColumnCount() > 0) BindCells();
}

std::int64_t MariaStatement::AffectedRows() const {
  return static_cast<std::int64_t>(mysql_stmt_affected_rows(statement_.get()));
}

std::vector<MariaColumn> MariaStatement::Columns() const {
  struct Free {
    void operator()(MYSQL_RES* result) const { mysql_free_result(result); }
  };
  const std::unique_ptr<MYSQL_RES, Free> result(mysql_stmt_result_metadata(statement_.get()));
  std::vector<MariaColumn> columns;
  for (unsigned i = 0; result && i < ColumnCount(); ++i)
    columns.push_back(MariaResult::Describe(*mysql_fetch_field_direct(result.get(), i)));
  return columns;
}

/// As ones that take nothing: a row then tells the lengths of its cells, which are fetched one by
/// one.
void MariaStatement::BindCells() {
  cells_.assign(ColumnCount(), MYSQL_BIND());
  lengths_.assign(ColumnCount(), 0);
  nulls_.assign(ColumnCount(), 0);
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    cells_[i].buffer_type = MYSQL_TYPE_STRING;
    cells_[i].flags = MADB_BIND_DUMMY;
    cells_[i].length = &lengths_[i];
    cells_[i].is_null = &nulls_[i];
  }
  Check(mysql_stmt_bind_result(statement_.get(), cells_.data()) != 0);
}

bool MariaStatement::Fetch() {
  const int outcome = mysql_stmt_fetch(statement_.get());
  Check(outcome == 1);
  return outcome != MYSQL_NO_DATA;
}

/// How long a number is as a text is not told.
std::optional<std::string> MariaStatement::CellAt(unsigned column) {
  constexpr std::size_t numberRoom = 128;
  if (nulls_[column] != 0) return std::nullopt;
  std::string text(std::max<std::size_t>(lengths_[column], numberRoom), '\0');
  unsigned long length = 0;
  my_bool isNull = 0;
  MYSQL_BIND cell{};
  cell.buffer_type = MYSQL_TYPE_STRING;
  cell.buffer = text.data();
  cell.buffer_length = static_cast<unsigned long>(text.size());
  cell.length = &length;
  cell.is_null = &isNull;
  Check(mysql_stmt_fetch_column(statement_.get(), &cell, column, 0) != 0);
  text.resize(std::min<std::size_t>(length, text.size()));
  return text;
}

}  // namespace tessel
