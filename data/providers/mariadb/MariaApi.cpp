#include "data/providers/mariadb/MariaApi.h"

#include <algorithm>
#include <new>
#include <utility>

#include <errmsg.h>
#include <mysqld_error.h>
#include <poll.h>

#include "contract/base/Error.h"

namespace tessel {

namespace {

using std::chrono::steady_clock;

/// Of the asynchronous calls; the system's name service needs more than they have by themselves.
constexpr std::size_t stepStack = std::size_t{512} << 10U;
constexpr unsigned binaryCharset = 63;
constexpr unsigned bytesOfCharacter = 4;  // In utf8mb4, at most.

std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

[[noreturn]] void Raise(MYSQL* connection) {
  ErrorInfo error;
  error.number = errorNumber::database;
  error.nativeError = static_cast<std::int32_t>(mysql_errno(connection));
  error.sqlState = mysql_sqlstate(connection);
  error.source = "MariaDB";
  error.description = mysql_error(connection);
  throw Error(std::move(error));
}

bool IsOneOf(const ErrorInfo& error, std::initializer_list<int> codes) {
  return std::ranges::find(codes, error.nativeError) != codes.end();
}

/// Waits for what a step of an asynchronous call waits for, but not for longer than a glance.
/// Returns what has happened, 0 if nothing.
int Await(MYSQL* connection, int status) {
  constexpr int glance = 10;  // Milliseconds.
  pollfd watched{mysql_get_socket(connection), 0, 0};
  if ((status & MYSQL_WAIT_READ) != 0) watched.events |= POLLIN;
  if ((status & MYSQL_WAIT_WRITE) != 0) watched.events |= POLLOUT;
  if ((status & MYSQL_WAIT_EXCEPT) != 0) watched.events |= POLLPRI;
  if (poll(&watched, 1, glance) <= 0) return 0;
  return status & (MYSQL_WAIT_READ | MYSQL_WAIT_WRITE | MYSQL_WAIT_EXCEPT);
}

std::string AttributeOf(const MYSQL_FIELD& field, mariadb_field_attr_t attribute) {
  MARIADB_CONST_STRING text{nullptr, 0};
  const bool missing = mariadb_field_attr(&text, &field, attribute) != 0;
  return missing || text.str == nullptr ? std::string() : std::string(text.str, text.length);
}

/// "uuid" for what is kept as a string, "json" for what is checked to be.
std::string ExtendedTypeOf(const MYSQL_FIELD& field) {
  const std::string type = AttributeOf(field, MARIADB_FIELD_ATTR_DATA_TYPE_NAME);
  return type.empty() ? AttributeOf(field, MARIADB_FIELD_ATTR_FORMAT_NAME) : type;
}

// --- what the server may read as a file ----------------------------------------------------------

using OfferedFile = std::optional<std::string_view>;

/// The file that the server names is never looked at.
int BeginFile(void** file, const char* /*name*/, void* offered) {
  *file = offered;
  return static_cast<OfferedFile*>(offered)->has_value() ? 0 : 1;
}

int ReadFile(void* file, char* buffer, unsigned size) {
  std::string_view& rest = **static_cast<OfferedFile*>(file);
  const std::size_t count = rest.copy(buffer, size);
  rest.remove_prefix(count);
  return static_cast<int>(count);
}

void EndFile(void* /*file*/) {}

int TellRefused(void* /*file*/, char* text, unsigned size) {
  constexpr std::string_view reason = "Files of this machine are not read.";
  text[reason.copy(text, size - 1)] = '\0';
  return CR_UNKNOWN_ERROR;
}

}  // namespace

/// After those of the network the server closes the connection as well.
bool SaysSessionIsLost(const ErrorInfo& error) {
  return IsOneOf(error, {CR_SERVER_GONE_ERROR, CR_SERVER_LOST, CR_SERVER_LOST_EXTENDED,
                         CR_MALFORMED_PACKET, CR_COMMANDS_OUT_OF_SYNC, ER_SERVER_SHUTDOWN,
                         ER_CONNECTION_KILLED, ER_NET_PACKET_TOO_LARGE, ER_NET_PACKETS_OUT_OF_ORDER,
                         ER_NET_UNCOMPRESS_ERROR, ER_NET_READ_ERROR, ER_NET_READ_INTERRUPTED,
                         ER_NET_ERROR_ON_WRITE, ER_NET_WRITE_INTERRUPTED});
}

bool SaysInterrupted(const ErrorInfo& error) { return IsOneOf(error, {ER_QUERY_INTERRUPTED}); }

bool SaysEmpty(const ErrorInfo& error) { return IsOneOf(error, {ER_EMPTY_QUERY}); }

// --- results -------------------------------------------------------------------------------------

/// An expression may have a column's name, but it has no table.
MariaColumn MariaResult::Describe(const MYSQL_FIELD& field) {
  MariaColumn told;
  told.name = TextOf(field.name);
  told.baseTable = TextOf(field.org_table);
  if (!told.baseTable.empty()) {
    told.baseCatalog = TextOf(field.db);
    told.baseColumn = TextOf(field.org_name);
  }
  told.type = field.type;
  told.flags = field.flags;
  told.isBinary = field.charsetnr == binaryCharset;
  told.extendedType = ExtendedTypeOf(field);
  told.size = told.isBinary ? field.length : field.length / bytesOfCharacter;
  told.decimals = field.decimals;
  return told;
}

void MariaResult::CheckEnd() const {
  if (mysql_errno(connection_) != 0) Raise(connection_);
}

// --- opening -------------------------------------------------------------------------------------

MariaConnection::MariaConnection() : offered_(std::make_unique<std::optional<std::string_view>>()) {
  static const int ready = mysql_server_init(0, nullptr, nullptr);
  if (ready == 0) connection_.reset(mysql_init(nullptr));
  if (!connection_) throw std::bad_alloc();
}

void MariaConnection::SetText(mysql_option option, const std::string& value) {
  if (!value.empty()) mysql_options(connection_.get(), option, value.c_str());
}

void MariaConnection::ApplyOptions(const MariaLogin& login) {
  MYSQL* connection = connection_.get();
  const unsigned allowed = 1;
  const my_bool on = 1;
  mysql_options(connection, MYSQL_OPT_NONBLOCK, &stepStack);
  mysql_options(connection, MYSQL_OPT_LOCAL_INFILE, &allowed);
  mysql_set_local_infile_handler(connection, BeginFile, ReadFile, EndFile, TellRefused,
                                 offered_.get());
  mysql_options(connection, MYSQL_SET_CHARSET_NAME, "utf8mb4");
  mysql_options4(connection, MYSQL_OPT_CONNECT_ATTR_ADD, "program_name",
                 login.applicationName.c_str());
  if (login.port != 0 && login.socket.empty()) {
    const unsigned tcp = MYSQL_PROTOCOL_TCP;
    mysql_options(connection, MYSQL_OPT_PROTOCOL, &tcp);
  }
  if (login.useSsl) mysql_options(connection, MYSQL_OPT_SSL_ENFORCE, &on);
  if (login.verifyServer) mysql_options(connection, MYSQL_OPT_SSL_VERIFY_SERVER_CERT, &on);
  SetText(MYSQL_OPT_SSL_CA, login.sslCa);
  SetText(MYSQL_OPT_SSL_CERT, login.sslCert);
  SetText(MYSQL_OPT_SSL_KEY, login.sslKey);
}

void MariaConnection::SetPatience(std::chrono::seconds patience) {
  const auto seconds = static_cast<unsigned>(patience.count());
  for (const mysql_option option :
       {MYSQL_OPT_CONNECT_TIMEOUT, MYSQL_OPT_READ_TIMEOUT, MYSQL_OPT_WRITE_TIMEOUT})
    mysql_options(connection_.get(), option, &seconds);
}

/// Connecting is done in steps; one that is told that its time is over ends with an error, and so
/// frees what it holds.
void MariaConnection::Open(const MariaLogin& login, std::chrono::seconds limit,
                           const WorkContext& context) {
  const auto start = steady_clock::now();
  const auto isOver = [&] { return limit.count() > 0 && steady_clock::now() - start > limit; };
  const auto given = [](const std::string& text) { return text.empty() ? nullptr : text.c_str(); };
  ApplyOptions(login);
  MYSQL* connection = connection_.get();
  MYSQL* opened = nullptr;
  int status =
      mysql_real_connect_start(&opened, connection, given(login.host), given(login.user),
                               given(login.password), given(login.database), login.port,
                               given(login.socket), CLIENT_MULTI_STATEMENTS | CLIENT_FOUND_ROWS);
  while (status != 0) {
    const bool over = context.StopAsked() || isOver();
    const int happened = over ? MYSQL_WAIT_TIMEOUT : Await(connection, status);
    if (happened != 0) status = mysql_real_connect_cont(&opened, connection, happened);
  }
  if (opened != nullptr) return;
  context.ThrowIfStopped();
  if (isOver())
    throw Error(errorNumber::database, "MariaDB",
                "The server did not answer within " + std::to_string(limit.count()) + " seconds.");
  Raise(connection);
}

// --- commands ------------------------------------------------------------------------------------

void MariaConnection::Run(const std::string& sql) {
  if (mysql_real_query(connection_.get(), sql.data(), sql.size()) != 0) Raise(connection_.get());
}

void MariaConnection::RunWithFile(const std::string& sql, std::string_view data) {
  *offered_ = data;
  const int failed = mysql_real_query(connection_.get(), sql.data(), sql.size());
  offered_->reset();
  if (failed != 0) Raise(connection_.get());
}

MariaResult MariaConnection::Result() {
  if (mysql_field_count(connection_.get()) == 0) return {};
  MYSQL_RES* result = mysql_use_result(connection_.get());
  if (result == nullptr) Raise(connection_.get());
  return {result, connection_.get()};
}

bool MariaConnection::NextResult() {
  const int outcome = mysql_next_result(connection_.get());
  if (outcome > 0) Raise(connection_.get());
  return outcome == 0;
}

std::int64_t MariaConnection::AffectedRows() const {
  return static_cast<std::int64_t>(mysql_affected_rows(connection_.get()));
}

void MariaConnection::SelectDatabase(const std::string& name) {
  if (mysql_select_db(connection_.get(), name.c_str()) != 0) Raise(connection_.get());
}

unsigned MariaConnection::ServerStatus() const {
  unsigned status = 0;
  mariadb_get_infov(connection_.get(), MARIADB_CONNECTION_SERVER_STATUS, &status);
  return status;
}

bool MariaConnection::InTransaction() const {
  return (ServerStatus() & SERVER_STATUS_IN_TRANS) != 0;
}

bool MariaConnection::CommitsByItself() const {
  return (ServerStatus() & SERVER_STATUS_AUTOCOMMIT) != 0;
}

std::string MariaConnection::Quoted(const std::string& text) const {
  std::string quoted;
  AppendQuoted(text, quoted);
  return quoted;
}

void MariaConnection::AppendQuoted(std::string_view text, std::string& out) const {
  const std::size_t begin = out.size() + 1;
  out += '\'';
  out.resize(begin + 2 * text.size() + 1);
  out.resize(begin + mysql_real_escape_string(connection_.get(), out.data() + begin, text.data(),
                                              static_cast<unsigned long>(text.size())));
  out += '\'';
}

// --- facts ---------------------------------------------------------------------------------------

std::string MariaConnection::Database() const { return TextOf(connection_->db); }
std::string MariaConnection::ServerVersion() const {
  return TextOf(mysql_get_server_info(connection_.get()));
}
std::string MariaConnection::HostInfo() const {
  return TextOf(mysql_get_host_info(connection_.get()));
}
std::string MariaConnection::Cipher() const {
  return TextOf(mysql_get_ssl_cipher(connection_.get()));
}
std::string MariaConnection::CharacterSet() const {
  return TextOf(mysql_character_set_name(connection_.get()));
}
std::string MariaConnection::LibraryVersion() { return TextOf(mysql_get_client_info()); }

}  // namespace tessel
