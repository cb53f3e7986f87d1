// Rows go into a table by COPY, in its text form. The server speaks of a row it does not take while
// more of them are on their way, and counts rows from the beginning of the COPY.

#include <charconv>
#include <cstring>
#include <utility>

#include "contract/text/NumberText.h"
#include "data/changes/RowSql.h"
#include "data/providers/postgresql/PostgresSession.h"
#include "data/providers/postgresql/client/PostgresMessages.h"

namespace tessel {

namespace {

constexpr std::size_t sentAtOnce = 64UL * 1024;

constexpr std::string_view queryCanceled = "57014";

/// The letter that stands for a character behind a backslash; 0: it stands for itself.
char EscapeOf(char c) {
  switch (c) {
    case '\\': return '\\';
    case '\t': return 't';
    case '\n': return 'n';
    case '\r': return 'r';
    default: return '\0';
  }
}

bool IsPlain(char c) { return static_cast<unsigned char>(c) >= ' ' && c != '\\'; }

void AppendEscaped(std::string_view text, std::string& out) {
  while (true) {
    std::size_t plain = 0;
    while (plain < text.size() && IsPlain(text[plain])) ++plain;
    out.append(text.substr(0, plain));
    if (plain == text.size()) return;
    const char letter = EscapeOf(text[plain]);
    if (letter != '\0') out += '\\';
    out += letter != '\0' ? letter : text[plain];
    text.remove_prefix(plain + 1);
  }
}

/// Adds a value as a cell of COPY.
struct CellWriter {
  std::string& out;

  void operator()(std::monostate /*null*/) const { out += "\\N"; }
  void operator()(bool value) const { out += value ? 't' : 'f'; }
  void operator()(std::int64_t value) const { AppendNumber(value, out); }
  void operator()(std::uint64_t value) const { AppendNumber(value, out); }
  void operator()(float value) const { AppendNumber(value, out); }
  void operator()(double value) const { AppendNumber(value, out); }
  void operator()(DecimalView value) const { AppendEscaped(value.digits, out); }
  void operator()(MomentView value) const { AppendEscaped(value.text, out); }
  void operator()(std::string_view value) const { AppendEscaped(value, out); }
  void operator()(BinaryView value) const {
    out += "\\\\x";
    for (const std::byte one : value.bytes) {
      const auto byte = static_cast<unsigned char>(one);
      out += hexDigits[byte >> 4U];
      out += hexDigits[byte & 15U];
    }
  }
};

bool HoldsNul(const ValueView& value) {
  const auto* text = std::get_if<std::string_view>(&value);
  return text != nullptr && std::memchr(text->data(), 0, text->size()) != nullptr;
}

/// The row of "COPY goods, line 57, column price: ...", from 0, in whatever language; -1: none.
std::int64_t RowIn(std::string_view context) {
  constexpr std::string_view beginning = "COPY ";
  const std::size_t copy = context.find(beginning);
  if (copy == std::string_view::npos) return -1;
  const std::size_t comma = context.find(", ", copy);
  const std::size_t digit = context.find_first_of("0123456789", comma);
  if (comma == std::string_view::npos || digit == std::string_view::npos) return -1;
  std::int64_t line = 0;
  std::from_chars(context.data() + digit, context.data() + context.size(), line);
  return line - 1;
}

/// The column that is named there; empty: none.
std::string ColumnIn(const std::string& context, const std::vector<LoadColumn>& columns) {
  for (const LoadColumn& column : columns) {
    const std::size_t at = context.find(" " + column.name);
    if (at == std::string::npos) continue;
    const std::size_t end = at + 1 + column.name.size();
    if (end == context.size() || context[end] == ':' || context[end] == '\n') return column.name;
  }
  return {};
}

}  // namespace

class PostgresSession::Loader final : public RowLoader {
 public:
  Loader(PostgresSession& session, const LoadRequest& request, WorkContext& context)
      : session_(session), columns_(request.columns) {
    std::string names;
    for (const LoadColumn& column : columns_)
      names.append(names.empty() ? "" : ", ").append(QuotedName(column.name, *session_.Writing()));
    running_.emplace(session_.cancel_, session_.CancelSender());
    session_.sql_ = "copy " + request.table + " (" + names + ") from stdin";
    session_.connection_->Send(session_.sql_);
    const PqResult first = session_.connection_->Next();
    if (first.Kind() != PqKind::CopyIn) RaiseLoadFailure(first, context);
    copies_ = true;
  }
  ~Loader() override {
    if (!copies_ || !session_.IsAlive()) return;
    std::vector<ErrorInfo> unused;
    session_.connection_->LeaveCopy(PqKind::CopyIn);
    (void)session_.DropResults(unused);
  }

  void Add(const LoadBatch& rows, WorkContext& context) override {
    auto cell = rows.cells.begin();
    for (std::size_t row = 0; row < rows.Rows(); ++row, ++rows_) {
      for (std::size_t column = 0; column < columns_.size(); ++column)
        AppendCell(*cell++, column, context);
      if (text_.size() >= sentAtOnce) Send(context);
    }
  }

  void End(WorkContext& context) override {
    Send(context);
    session_.connection_->EndCopyData();
    copies_ = false;
    while (const PqResult piece = session_.connection_->Next())
      if (piece.Kind() == PqKind::Error) RaiseLoadFailure(piece, context);
    for (const PqMessage& notice : session_.connection_->TakeNotices())
      context.Report(ToErrorInfo(notice, errorNumber::information, session_.sql_));
    session_.ended_ = true;
  }

 private:
  void AppendCell(const ValueView& value, std::size_t column, WorkContext& context) {
    if (HoldsNul(value)) {
      context.RefuseRow(rows_, columns_[column].name);
      throw Error(errorNumber::typeMismatch, "PostgreSQL",
                  "PostgreSQL cannot hold a text with a zero character in it.");
    }
    std::visit(CellWriter{text_}, value);
    text_ += column + 1 == columns_.size() ? '\n' : '\t';
  }

  void Send(const WorkContext& context) {
    context.ThrowIfStopped();
    session_.connection_->SendCopyData(text_);
    text_.clear();
  }

  /// The server's own count of lines would be taken for that of the file.
  [[noreturn]] void RaiseLoadFailure(const PqResult& failed, WorkContext& context) {
    PqMessage message = failed.Message();
    const std::int64_t row = RowIn(message.context);
    const bool cancelled = context.StopAsked() && message.sqlState == queryCanceled;
    if (row >= 0 && !cancelled)
      context.RefuseRow(row, message.column.empty() ? ColumnIn(message.context, columns_)
                                                    : message.column);
    message.context.clear();
    std::vector<ErrorInfo> errors = {ToErrorInfo(message, errorNumber::database, session_.sql_)};
    (void)session_.DropResults(errors);
    if (cancelled) throw CancelledError();
    context.Raise(std::move(errors));
  }

  PostgresSession& session_;
  const std::vector<LoadColumn>& columns_;
  std::optional<CancelSwitch::On> running_;
  bool copies_ = false;  ///< The server waits for rows.
  std::string text_;     ///< Still to be sent.
  std::int64_t rows_ = 0;
};

std::unique_ptr<RowLoader> PostgresSession::BeginLoad(const LoadRequest& request,
                                                      WorkContext& context) {
  return std::make_unique<Loader>(*this, request, context);
}

}  // namespace tessel
