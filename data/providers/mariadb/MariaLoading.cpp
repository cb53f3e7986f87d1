// Rows go into a table by INSERTs of many rows each, or as the file of a LOAD DATA LOCAL. The
// server does not always tell which row it did not take: then all of the statement are undone and
// given to it one by one.

#include <charconv>

#include "contract/text/NumberText.h"
#include "data/changes/RowSql.h"
#include "data/providers/mariadb/MariaSession.h"

namespace tessel {

namespace {

/// Bytes of a statement, of which the server takes 16 megabytes by default.
constexpr std::size_t sentAtOnce = 256UL * 1024;

void AppendHex(BinaryView value, std::string& out) {
  for (const std::byte one : value.bytes) {
    const auto byte = static_cast<unsigned char>(one);
    out += hexDigits[byte >> 4U];
    out += hexDigits[byte & 15U];
  }
}

/// Adds a value as a literal. Numbers of other than whole ones stand in quotes: without them the
/// server would take them for numbers of double precision.
struct LiteralWriter {
  const MariaConnection& connection;
  std::string& out;

  void operator()(std::monostate /*null*/) const { out += "null"; }
  void operator()(bool value) const { out += value ? '1' : '0'; }
  void operator()(std::int64_t value) const { AppendNumber(value, out); }
  void operator()(std::uint64_t value) const { AppendNumber(value, out); }
  void operator()(float value) const { AppendReal(value); }
  void operator()(double value) const { AppendReal(value); }
  void operator()(DecimalView value) const { connection.AppendQuoted(value.digits, out); }
  void operator()(MomentView value) const { connection.AppendQuoted(value.text, out); }
  void operator()(std::string_view value) const { connection.AppendQuoted(value, out); }
  void operator()(BinaryView value) const {
    out += "x'";
    AppendHex(value, out);
    out += '\'';
  }

 private:
  template <class Number>
  void AppendReal(Number value) const {
    out += '\'';
    AppendNumber(value, out);
    out += '\'';
  }
};

/// Adds a value as a field of a file. Bytes are written as hexadecimal digits.
struct FieldWriter {
  std::string& out;

  void operator()(std::monostate /*null*/) const { out += "\\N"; }
  void operator()(bool value) const { out += value ? '1' : '0'; }
  void operator()(std::int64_t value) const { AppendNumber(value, out); }
  void operator()(std::uint64_t value) const { AppendNumber(value, out); }
  void operator()(float value) const { AppendNumber(value, out); }
  void operator()(double value) const { AppendNumber(value, out); }
  void operator()(DecimalView value) const { AppendText(value.digits); }
  void operator()(MomentView value) const { AppendText(value.text); }
  void operator()(std::string_view value) const { AppendText(value); }
  void operator()(BinaryView value) const { AppendHex(value, out); }

 private:
  void AppendText(std::string_view text) const {
    for (const char c : text) {
      if (c == '\\' || c == '\t' || c == '\n' || c == '\0') out += '\\';
      out += c == '\0' ? '0' : c;
    }
  }
};

/// "load data local infile 'rows' into table t ... (a, @field2) set b = unhex(@field2)". The signs
/// are given by their numbers: what a backslash in quotes means is a setting.
std::string FileCommand(const LoadRequest& request, const WriteDialect& dialect) {
  std::string names;
  std::string sets;
  for (std::size_t i = 0; i < request.columns.size(); ++i) {
    const std::string name = QuotedName(request.columns[i].name, dialect);
    const std::string variable = "@field" + std::to_string(i);
    const bool isBinary = IsBinaryType(request.columns[i].type);
    names.append(i == 0 ? "" : ", ").append(isBinary ? variable : name);
    if (isBinary)
      sets.append(sets.empty() ? " set " : ", ").append(name + " = unhex(" + variable + ")");
  }
  return "load data local infile 'rows' into table " + request.table +
         " character set utf8mb4 fields terminated by x'09' escaped by x'5C' lines terminated by "
         "x'0A' (" +
         names + ")" + sets;
}

/// The row of "Out of range value for column 'n' at row 3", from 0; -1: none is told.
std::int64_t RowIn(std::string_view message) {
  constexpr std::string_view words = " at row ";
  const std::size_t at = message.rfind(words);
  if (at == std::string_view::npos) return -1;
  std::int64_t row = 0;
  std::from_chars(message.data() + at + words.size(), message.data() + message.size(), row);
  return row - 1;
}

/// The column that a message names, in quotes of either kind; empty: none.
std::string ColumnIn(const std::string& message, const std::vector<LoadColumn>& columns) {
  for (const LoadColumn& column : columns)
    for (const char quote : {'\'', '`'})
      if (message.find("olumn " + (quote + column.name + quote)) != std::string::npos ||
          message.find("." + (quote + column.name + quote)) != std::string::npos)
        return column.name;
  return {};
}

/// Whether it is a row that is to blame, and not a lock or a full disk; what comes of a warning has
/// no SQLSTATE.
bool IsOfRow(const Error& error) {
  const std::string& state = error.Info().sqlState;
  return state.empty() || state.starts_with("22") || state.starts_with("23");
}

/// The engine of ") ENGINE=InnoDB DEFAULT CHARSET=..."; empty: of a view, say.
std::string EngineIn(std::string_view definition) {
  constexpr std::string_view word = ") ENGINE=";
  const std::size_t at = definition.rfind(word);
  if (at == std::string_view::npos) return {};
  const std::string_view rest = definition.substr(at + word.size());
  return std::string(rest.substr(0, rest.find(' ')));
}

}  // namespace

class MariaSession::Loader final : public RowLoader {
 public:
  Loader(MariaSession& session, const LoadRequest& request)
      : session_(session),
        columns_(request.columns),
        running_(session.cancel_, session.CancelSender()),
        asFile_(request.asFile),
        command_(asFile_ ? FileCommand(request, session.dialect_)
                         : InsertBeginning(request, session.dialect_)) {}

  void Add(const LoadBatch& rows, WorkContext& context) override {
    auto cell = rows.cells.begin();
    for (std::size_t row = 0; row < rows.Rows(); ++row) {
      begins_.push_back(text_.size());
      if (asFile_) AddLine(cell);
      else AddTuple(cell);
      if (text_.size() >= sentAtOnce) Send(context);
    }
  }

  void End(WorkContext& context) override { Send(context); }

 private:
  using Cell = std::vector<ValueView>::const_iterator;

  void AddLine(Cell& cell) {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      std::visit(FieldWriter{text_}, *cell++);
      text_ += column + 1 == columns_.size() ? '\n' : '\t';
    }
  }

  void AddTuple(Cell& cell) {
    text_ += begins_.size() == 1 ? "(" : ",(";
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      if (column > 0) text_ += ',';
      std::visit(LiteralWriter{*session_.connection_, text_}, *cell++);
    }
    text_ += ')';
  }

  void Send(WorkContext& context) {
    if (begins_.empty()) return;
    context.ThrowIfStopped();
    try {
      session_.connection_->Run("savepoint tessel_rows");
      Run(text_);
    } catch (const Error& error) {
      if (context.StopAsked() || SaysSessionIsLost(error.Info()))
        session_.RaiseFailure(error, context);
      session_.Guarded(context, [&] { RaiseRefused(error, context); });
    }
    sent_ += static_cast<std::int64_t>(begins_.size());
    begins_.clear();
    text_.clear();
  }

  /// Hands over rows. What the server would change to make it fit, or leave out, is refused too.
  void Run(std::string_view rows) {
    if (asFile_) session_.connection_->RunWithFile(command_, rows);
    else session_.connection_->Run(command_ + std::string(rows));
    if (session_.connection_->WarningCount() == 0) return;
    session_.connection_->Run("show warnings");
    std::optional<Error> refused;
    MariaResult warnings = session_.connection_->Result();
    while (warnings.Fetch())
      if (!refused && warnings.TextAt(0) != "Note")
        refused = Error(errorNumber::database, "MariaDB", std::string(warnings.TextAt(2)));
    if (refused) throw Error(*refused);
  }

  [[noreturn]] void RaiseRefused(const Error& error, WorkContext& context) {
    const std::int64_t told = RowIn(error.Description());
    if (told >= 0 && static_cast<std::size_t>(told) < begins_.size()) Refuse(told, error, context);
    if (!IsOfRow(error)) session_.RaiseFailure(error, context);
    if (begins_.size() == 1) Refuse(0, error, context);
    if (UndoRows()) TryEach(context);
    session_.RaiseFailure(error, context);
  }

  /// False where some of them cannot be taken back: the table's engine knows no transactions.
  [[nodiscard]] bool UndoRows() const {
    session_.connection_->Run("rollback to savepoint tessel_rows");
    return session_.connection_->WarningCount() == 0;
  }

  void TryEach(WorkContext& context) {
    for (std::size_t row = 0; row < begins_.size() && !context.StopAsked(); ++row) {
      try {
        Run(RowText(row));
      } catch (const Error& own) {
        Refuse(static_cast<std::int64_t>(row), own, context);
      }
    }
  }

  /// Without the comma that divides it from the one before.
  [[nodiscard]] std::string_view RowText(std::size_t row) const {
    const std::size_t end = row + 1 < begins_.size() ? begins_[row + 1] : text_.size();
    const std::size_t begin = begins_[row] + (row > 0 && !asFile_ ? 1 : 0);
    return std::string_view(text_).substr(begin, end - begin);
  }

  [[noreturn]] void Refuse(std::int64_t row, const Error& error, WorkContext& context) {
    if (!context.StopAsked())
      context.RefuseRow(sent_ + row, ColumnIn(error.Description(), columns_));
    session_.RaiseFailure(error, context);
  }

  MariaSession& session_;
  const std::vector<LoadColumn>& columns_;
  const CancelSwitch::On running_;
  const bool asFile_;
  const std::string command_;        ///< What stands before the rows, or asks for the file of them.
  std::string text_;                 ///< Of the rows that are still to be sent.
  std::vector<std::size_t> begins_;  ///< Where each of them begins there.
  std::int64_t sent_ = 0;            ///< Rows sent so far.
};

/// The rows of a table whose engine knows no transactions could not be taken back.
void MariaSession::RequireUndo(const LoadRequest& request) {
  if (request.commitRows > 0) return;
  connection_->Run("show create table " + request.table);
  std::string engine;
  {
    MariaResult table = connection_->Result();
    while (table.Fetch())
      if (table.ColumnCount() == 2) engine = EngineIn(table.TextAt(1));
  }
  if (engine.empty()) return;
  connection_->Run("select transactions from information_schema.engines where engine = " +
                   connection_->Quoted(engine));
  bool undoes = true;
  {
    MariaResult known = connection_->Result();
    while (known.Fetch()) undoes = !known.IsNullAt(0) && known.TextAt(0) == "YES";
  }
  if (!undoes)
    throw Error(errorNumber::notSupported, "MariaDB",
                "The table's engine, " + engine +
                    ", knows no transactions: rows that it has taken could not be taken back. "
                    "Import in batches, and what was taken stays.");
}

std::unique_ptr<RowLoader> MariaSession::BeginLoad(const LoadRequest& request,
                                                   WorkContext& context) {
  Guarded(context, [&] { RequireUndo(request); });
  return std::make_unique<Loader>(*this, request);
}

}  // namespace tessel
