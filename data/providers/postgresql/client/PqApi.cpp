#include "data/providers/postgresql/client/PqApi.h"

#include <charconv>
#include <new>
#include <utility>

#include <poll.h>

#include "contract/base/Error.h"

namespace tessel {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

std::string WithoutLineEnd(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

/// Waits until the socket is ready, or for `limit` milliseconds (-1: without one).
bool WaitFor(int socket, short events, int limit) {
  pollfd watched{socket, events, 0};
  return poll(&watched, 1, limit) > 0;
}

std::string FieldOf(const PGresult* result, int field) {
  return TextOf(pq::ResultErrorField(result, field));
}

int NumberOf(const PGresult* result, int field) {
  const std::string text = FieldOf(result, field);
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Messages of libpq itself have a text only.
PqMessage MessageOf(const PGresult* result) {
  PqMessage message;
  message.severity = FieldOf(result, PG_DIAG_SEVERITY);
  message.sqlState = FieldOf(result, PG_DIAG_SQLSTATE);
  message.text = FieldOf(result, PG_DIAG_MESSAGE_PRIMARY);
  if (message.text.empty()) message.text = WithoutLineEnd(TextOf(pq::ResultErrorMessage(result)));
  message.detail = FieldOf(result, PG_DIAG_MESSAGE_DETAIL);
  message.hint = FieldOf(result, PG_DIAG_MESSAGE_HINT);
  message.context = FieldOf(result, PG_DIAG_CONTEXT);
  message.column = FieldOf(result, PG_DIAG_COLUMN_NAME);
  message.position = NumberOf(result, PG_DIAG_STATEMENT_POSITION);
  message.innerQuery = FieldOf(result, PG_DIAG_INTERNAL_QUERY);
  message.innerPosition = NumberOf(result, PG_DIAG_INTERNAL_POSITION);
  return message;
}

}  // namespace

std::vector<PqKeyword> PqDefaults() {
  struct Free {
    void operator()(PQconninfoOption* options) const { pq::ConninfoFree(options); }
  };
  const std::unique_ptr<PQconninfoOption, Free> options(pq::Conndefaults());
  if (!options) throw std::bad_alloc();
  std::vector<PqKeyword> defaults;
  for (const auto* option = options.get(); option->keyword != nullptr; ++option)
    defaults.push_back({option->keyword, option->val == nullptr ? "" : option->val});
  return defaults;
}

// --- results -------------------------------------------------------------------------------------

PqKind PqResult::Kind() const {
  switch (pq::ResultStatus(result_.get())) {
    case PGRES_SINGLE_TUPLE: return PqKind::Row;
    case PGRES_TUPLES_OK: return PqKind::Rows;
    case PGRES_COMMAND_OK: return PqKind::Done;
    case PGRES_EMPTY_QUERY: return PqKind::Empty;
    case PGRES_COPY_IN: return PqKind::CopyIn;
    case PGRES_COPY_BOTH: return PqKind::CopyIn;
    case PGRES_COPY_OUT: return PqKind::CopyOut;
    default: return PqKind::Error;
  }
}

PqColumn PqResult::Column(int column) const {
  const PGresult* result = result_.get();
  return {.name = TextOf(pq::Fname(result, column)),
          .type = pq::Ftype(result, column),
          .modifier = pq::Fmod(result, column),
          .table = pq::Ftable(result, column),
          .number = pq::Ftablecol(result, column)};
}

std::int64_t PqResult::AffectedRows() const {
  const std::string text = TextOf(pq::CmdTuples(result_.get()));
  std::int64_t count = -1;
  std::from_chars(text.data(), text.data() + text.size(), count);
  return count;
}

PqMessage PqResult::Message() const { return MessageOf(result_.get()); }

PqBytes::PqBytes(std::string_view text)
    : bytes_(pq::UnescapeBytea(reinterpret_cast<const unsigned char*>(text.data()), &size_)) {
  if (!bytes_) throw std::bad_alloc();
}

std::span<const std::byte> PqBytes::View() const {
  return {reinterpret_cast<const std::byte*>(bytes_.get()), size_};
}

// --- opening -------------------------------------------------------------------------------------

void PqConnection::RaiseFailure(const char* sqlState) const {
  ErrorInfo error;
  error.number = errorNumber::database;
  error.sqlState = sqlState;
  error.source = "PostgreSQL";
  error.description = WithoutLineEnd(TextOf(pq::ErrorMessage(connection_.get())));
  throw Error(std::move(error));
}

void PqConnection::Open(const std::vector<PqKeyword>& keywords, std::chrono::seconds limit,
                        const WorkContext& context) {
  constexpr int glance = 10;  // Milliseconds between looks at the request to stop.
  const auto start = steady_clock::now();
  std::vector<const char*> names;
  std::vector<const char*> values;
  for (const PqKeyword& keyword : keywords) {
    names.push_back(keyword.name.c_str());
    values.push_back(keyword.value.c_str());
  }
  names.push_back(nullptr);
  values.push_back(nullptr);
  connection_.reset(pq::ConnectStartParams(names.data(), values.data(), 0));
  if (!connection_) throw std::bad_alloc();
  if (pq::Status(connection_.get()) == CONNECTION_BAD) RaiseFailure("08001");
  pq::SetNoticeReceiver(connection_.get(), OnNotice, this);
  PostgresPollingStatusType next = PGRES_POLLING_WRITING;
  while (next != PGRES_POLLING_OK) {
    if (next == PGRES_POLLING_FAILED) RaiseFailure("08001");
    context.ThrowIfStopped();
    if (limit.count() > 0 && steady_clock::now() - start > limit)
      throw Error(ErrorInfo{errorNumber::database,
                            0,
                            "08001",
                            "PostgreSQL",
                            "The server did not answer within " + std::to_string(limit.count()) +
                                " seconds.",
                            {},
                            0});
    const short events = next == PGRES_POLLING_READING ? POLLIN : POLLOUT;
    if (WaitFor(pq::Socket(connection_.get()), events, glance))
      next = pq::ConnectPoll(connection_.get());
  }
  pq::Setnonblocking(connection_.get(), 1);
  cancel_.reset(pq::GetCancel(connection_.get()));
}

// --- commands ------------------------------------------------------------------------------------

void PqConnection::CheckSent(int sent) {
  if (sent == 0) RaiseFailure(IsAlive() ? "" : "08006");
  pq::SetSingleRowMode(connection_.get());
}

void PqConnection::Send(const std::string& sql) {
  CheckSent(pq::SendQuery(connection_.get(), sql.c_str()));
}

void PqConnection::Send(const std::string& sql, const std::vector<std::string>& parameters) {
  std::vector<const char*> values;
  for (const std::string& parameter : parameters) values.push_back(parameter.c_str());
  CheckSent(pq::SendQueryParams(connection_.get(), sql.c_str(), static_cast<int>(values.size()),
                                nullptr, values.data(), nullptr, nullptr, 0));
}

void PqConnection::Send(const std::string& sql, const std::vector<PqParameter>& parameters) {
  std::vector<const char*> values;
  std::vector<int> lengths;
  std::vector<int> formats;
  for (const PqParameter& parameter : parameters) {
    values.push_back(parameter.value ? parameter.value->c_str() : nullptr);
    lengths.push_back(parameter.value ? static_cast<int>(parameter.value->size()) : 0);
    formats.push_back(parameter.isBinary ? 1 : 0);
  }
  CheckSent(pq::SendQueryParams(connection_.get(), sql.c_str(), static_cast<int>(values.size()),
                                nullptr, values.data(), lengths.data(), formats.data(), 0));
}

/// Sends what is left to send, and reads when there is something to read. False when the connection
/// is lost.
bool PqConnection::Receive() {
  const int unsent = pq::Flush(connection_.get());
  if (unsent < 0) return false;
  const auto events = static_cast<short>(unsent > 0 ? POLLIN | POLLOUT : POLLIN);
  WaitFor(pq::Socket(connection_.get()), events, -1);
  return pq::ConsumeInput(connection_.get()) == 1;
}

/// A loss of the connection is told by PQgetResult, as an error.
PqResult PqConnection::Next() {
  while (pq::IsBusy(connection_.get()) != 0) {
    if (!Receive()) break;
  }
  return PqResult(pq::GetResult(connection_.get()));
}

void PqConnection::LeaveCopy(PqKind kind) {
  if (kind == PqKind::CopyIn) {
    while (pq::PutCopyEnd(connection_.get(), "not possible from here") == 0) Receive();
    return;
  }
  for (;;) {
    char* data = nullptr;
    const int size = pq::GetCopyData(connection_.get(), &data, 1);
    if (data != nullptr) pq::Freemem(data);
    if (size < 0 || (size == 0 && !Receive())) return;
  }
}

/// Else the library would keep all that the server is too slow for.
void PqConnection::FlushAll() {
  for (;;) {
    const int unsent = pq::Flush(connection_.get());
    if (unsent == 0) return;
    if (unsent < 0) RaiseFailure("08006");
    WaitFor(pq::Socket(connection_.get()), POLLIN | POLLOUT, -1);
    if (pq::ConsumeInput(connection_.get()) != 1) RaiseFailure("08006");
  }
}

void PqConnection::SendCopyData(std::string_view data) {
  const auto size = static_cast<int>(data.size());
  for (;;) {
    const int sent = pq::PutCopyData(connection_.get(), data.data(), size);
    if (sent < 0) RaiseFailure(IsAlive() ? "" : "08006");
    FlushAll();
    if (sent > 0) return;
  }
}

void PqConnection::EndCopyData() {
  for (;;) {
    const int sent = pq::PutCopyEnd(connection_.get(), nullptr);
    if (sent < 0) RaiseFailure(IsAlive() ? "" : "08006");
    FlushAll();
    if (sent > 0) return;
  }
}

void PqConnection::SendCancel() noexcept {
  std::string problem(256, '\0');
  if (cancel_) pq::Cancel(cancel_.get(), problem.data(), static_cast<int>(problem.size()));
}

// --- notices and settings ------------------------------------------------------------------------

void PqConnection::OnNotice(void* connection, const PGresult* notice) {
  static_cast<PqConnection*>(connection)->notices_.push_back(MessageOf(notice));
}

std::vector<PqMessage> PqConnection::TakeNotices() {
  struct Free {
    void operator()(PGnotify* notification) const { pq::Freemem(notification); }
  };
  for (;;) {
    const std::unique_ptr<PGnotify, Free> told(pq::Notifies(connection_.get()));
    if (!told) break;
    PqMessage message;
    message.severity = "NOTIFY";
    message.text = TextOf(told->relname) + " (process " + std::to_string(told->be_pid) + ")";
    message.detail = TextOf(told->extra);
    notices_.push_back(std::move(message));
  }
  return std::exchange(notices_, {});
}

std::string PqConnection::Database() const { return TextOf(pq::Db(connection_.get())); }
std::string PqConnection::User() const { return TextOf(pq::User(connection_.get())); }
std::string PqConnection::Host() const { return TextOf(pq::Host(connection_.get())); }
std::string PqConnection::Port() const { return TextOf(pq::Port(connection_.get())); }

std::string PqConnection::Setting(const char* name) const {
  return TextOf(pq::ParameterStatus(connection_.get(), name));
}

}  // namespace tessel
