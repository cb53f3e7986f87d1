// Rows go into a table by one prepared statement, many in one call where the driver takes arrays of
// parameters. Values are texts, which the database reads as its columns are.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "data/providers/odbc/OdbcSession.h"
#include "data/providers/odbc/driver/OdbcErrors.h"

namespace tessel::odbc {

namespace {

constexpr std::size_t rowsAtOnce = 500;
constexpr std::size_t bytesAtOnce = 4UL * 1024 * 1024;  ///< Of the values of one column.
constexpr SQLLEN longText = 4000;  ///< From this length on a text is a long one to drivers.

bool IsWide(DataType type) {
  return type == DataType::WChar || type == DataType::VarWChar || type == DataType::LongVarWChar;
}

/// The values of one column for several rows, each in a place of the same width.
class ColumnArray {
 public:
  explicit ColumnArray(DataType type) : type_(type) {}

  void Clear() {
    texts_.clear();
    indicators_.clear();
    areBits_ = type_ == DataType::Boolean;
  }
  void Add(const ValueView& value) {
    std::string& text = texts_.emplace_back();
    if (const auto* bytes = std::get_if<BinaryView>(&value))
      text.assign(reinterpret_cast<const char*>(bytes->bytes.data()), bytes->bytes.size());
    else if (const auto* flag = std::get_if<bool>(&value)) text = *flag ? "1" : "0";
    else AppendText(value, text);
    areBits_ = areBits_ && (IsNull(value) || std::holds_alternative<bool>(value));
    indicators_.push_back(IsNull(value) ? SQL_NULL_DATA : static_cast<SQLLEN>(text.size()));
  }
  [[nodiscard]] bool HoldsNul(std::size_t row) const {
    return !IsBinaryType(type_) && texts_[row].find('\0') != std::string::npos;
  }

  /// Binds the values of `count` rows from `first` on.
  void Bind(Statement& statement, SQLUSMALLINT number, std::size_t first, std::size_t count) {
    width_ = 1;
    for (std::size_t i = first; i < first + count; ++i) width_ = std::max(width_, texts_[i].size());
    values_.assign(width_ * count, '\0');
    for (std::size_t i = 0; i < count; ++i)
      std::memcpy(values_.data() + i * width_, texts_[first + i].data(), texts_[first + i].size());
    if (areBits_) std::ranges::replace(values_, '0', '\0');
    if (areBits_) std::ranges::replace(values_, '1', '\1');
    statement.BindArray(number, CType(), SqlType(), values_.data(), static_cast<SQLLEN>(width_),
                        indicators_.data() + first);
  }
  /// Bytes that the values of these rows take when they are bound.
  [[nodiscard]] std::size_t BytesOf(std::size_t first, std::size_t count) const {
    std::size_t width = 1;
    for (std::size_t i = first; i < first + count; ++i) width = std::max(width, texts_[i].size());
    return width * count;
  }

 private:
  [[nodiscard]] SQLSMALLINT CType() const {
    if (areBits_) return SQL_C_BIT;
    return IsBinaryType(type_) ? SQL_C_BINARY : SQL_C_CHAR;
  }
  [[nodiscard]] SQLSMALLINT SqlType() const {
    if (IsBinaryType(type_)) return SQL_LONGVARBINARY;
    if (areBits_) return SQL_BIT;
    const bool isLong = static_cast<SQLLEN>(width_) >= longText;
    if (IsWide(type_)) return isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
    return isLong ? SQL_LONGVARCHAR : SQL_VARCHAR;
  }

  DataType type_;
  std::vector<std::string> texts_;
  std::vector<SQLLEN> indicators_;
  std::vector<char> values_;  ///< As they are bound.
  std::size_t width_ = 1;
  bool areBits_ = false;  ///< All are truths: MariaDB takes a text for a bit as its characters.
};

/// Whether it is the row that is to blame. SQLite's driver has one SQLSTATE for all.
bool IsOfRow(const ErrorInfo& error) {
  constexpr int sqliteConstraint = 19;
  return error.sqlState.starts_with("22") || error.sqlState.starts_with("23") ||
         (error.sqlState == "HY000" && error.nativeError == sqliteConstraint);
}

}  // namespace

class OdbcSession::Loader final : public RowLoader {
 public:
  Loader(OdbcSession& session, const LoadRequest& request)
      : session_(session), columns_(request.columns), statement_(*session.dbc_) {
    for (const LoadColumn& column : columns_) arrays_.emplace_back(column.type);
    statement_.Prepare(InsertBeginning(request, *session.Writing()) +
                       QuestionMarks(columns_.size()));
    states_.resize(rowsAtOnce);
    takesArrays_ = session.profile_.takesArrays && !session.Writing()->needsKey &&
                   statement_.SetArray(1, states_.data());
  }

  void Add(const LoadBatch& rows, WorkContext& context) override {
    for (ColumnArray& array : arrays_) array.Clear();
    auto cell = rows.cells.begin();
    for (std::size_t row = 0; row < rows.Rows(); ++row)
      for (ColumnArray& array : arrays_) array.Add(*cell++);
    for (std::size_t row = 0; row < rows.Rows();) {
      const std::size_t count = CountFrom(row, rows.Rows() - row);
      CheckTexts(row, count, context);
      Execute(row, count, context);
      row += count;
      rows_ += static_cast<std::int64_t>(count);
    }
  }
  void End(WorkContext& /*context*/) override {}

 private:
  /// How many rows go in one call: fewer where a value is long.
  [[nodiscard]] std::size_t CountFrom(std::size_t first, std::size_t left) const {
    std::size_t count = takesArrays_ ? std::min(left, rowsAtOnce) : 1;
    const auto isTooMuch = [&](const ColumnArray& array) {
      return array.BytesOf(first, count) > bytesAtOnce;
    };
    while (count > 1 && std::ranges::any_of(arrays_, isTooMuch)) count /= 2;
    return count;
  }

  void CheckTexts(std::size_t first, std::size_t count, WorkContext& context) const {
    if (!session_.profile_.textEndsAtZero) return;
    for (std::size_t row = first; row < first + count; ++row)
      for (std::size_t i = 0; i < arrays_.size(); ++i) {
        if (!arrays_[i].HoldsNul(row)) continue;
        context.RefuseRow(rows_ + static_cast<std::int64_t>(row - first), columns_[i].name);
        throw Error(errorNumber::typeMismatch, std::string(session_.profile_.name),
                    "The ODBC driver cannot write a text with a zero character in it.");
      }
  }

  /// Of several rows a driver does not tell which one was refused: then they are undone and go one
  /// by one.
  void Execute(std::size_t first, std::size_t count, WorkContext& context) {
    context.ThrowIfStopped();
    if (count == 1) return ExecuteOne(first, 0, context);
    session_.RunControl("savepoint tessel_rows", nullptr);
    try {
      session_.Guarded(context, [&] { Run(first, count, context); });
    } catch (const Error&) {
      if (context.StopAsked() || !session_.IsAlive()) throw;
      session_.RunControl("rollback to savepoint tessel_rows", nullptr);
      for (std::size_t row = 0; row < count; ++row) ExecuteOne(first + row, row, context);
    }
  }

  /// The row is number `place` of those that go together.
  void ExecuteOne(std::size_t row, std::size_t place, WorkContext& context) {
    session_.Guarded(context, [&] {
      try {
        Run(row, 1, context);
      } catch (const Failure& failure) {
        if (IsOfRow(ToErrors(failure.Records(), session_.driver_).front()))
          context.RefuseRow(rows_ + static_cast<std::int64_t>(place));
        throw;
      }
    });
  }

  void Run(std::size_t first, std::size_t count, WorkContext& context) {
    context.ThrowIfStopped();
    if (takesArrays_) (void)statement_.SetArray(count, states_.data());
    for (std::size_t i = 0; i < arrays_.size(); ++i)
      arrays_[i].Bind(statement_, static_cast<SQLUSMALLINT>(i + 1), first, count);
    std::fill(states_.begin(), states_.end(), static_cast<SQLUSMALLINT>(SQL_PARAM_SUCCESS));
    Diagnostics notices;
    (void)statement_.ExecutePrepared(session_.cancel_, notices);
    if (session_.cancel_.Sent()) session_.RaiseCancelledLate();
    if (std::ranges::find(states_, SQL_PARAM_ERROR) != states_.end()) RaiseSilent(notices);
  }

  /// A driver may report success although it did not take every row.
  [[noreturn]] void RaiseSilent(const Diagnostics& notices) const {
    std::string text = "The database did not take the record.";
    for (const ErrorInfo& notice : ToNotices(notices, session_.driver_, session_.profile_))
      text += " " + notice.description;
    throw Error(errorNumber::database, session_.driver_, text);
  }

  OdbcSession& session_;
  const std::vector<LoadColumn>& columns_;
  Statement statement_;
  std::vector<ColumnArray> arrays_;
  std::vector<SQLUSMALLINT> states_;
  bool takesArrays_ = false;
  std::int64_t rows_ = 0;  ///< So far.
};

std::unique_ptr<RowLoader> OdbcSession::BeginLoad(const LoadRequest& request,
                                                  WorkContext& context) {
  hasWarnings_ = true;
  return Guarded(context, [&] { return std::make_unique<Loader>(*this, request); });
}

}  // namespace tessel::odbc
